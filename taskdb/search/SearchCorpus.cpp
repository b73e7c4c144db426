#include "taskdb/search/SearchCorpus.h"

#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageSnapsot.h"

#include <QHash>

#include <algorithm>
#include <utility>

bool SearchCorpus::follow(const TaskStorage& storage, const std::stop_token& stop)
{
    if (storage.modification() == m_modification)
        return true;
    TaskStorageSnapsot snapshot;
    storage.takeSnapshot(snapshot);
    m_modification = -1;
    m_entries.clear();
    m_texts.clear();
    if (!_collect(snapshot, stop))
        return false;
    m_modification = snapshot.modification();
    return true;
}

bool SearchCorpus::_collect(const TaskStorageSnapsot& snapshot, const std::stop_token& stop)
{
    const QList<TodoTask>& tasks = snapshot.tasks();
    QHash<TodoTask::Id, qsizetype> unlisted;
    unlisted.reserve(tasks.size());
    for (qsizetype i = 0; i < tasks.size() && !stop.stop_requested(); ++i)
        unlisted.insert(tasks.at(i).id(), i);
    m_entries.reserve(tasks.size());
    const auto collectGroup = [&](const FocusGroup& group) {
        const bool isTrash = group.id() == TaskStorage::ms_trashId;
        for (const TodoTask::Id& id : group.tasks()) {
            if (stop.stop_requested())
                return;
            const auto found = unlisted.constFind(id);
            if (found == unlisted.cend())
                continue;
            const TodoTask& task = tasks.at(*found);
            _append(task, isTrash ? Deleted : task.completed() ? Done : Open);
            unlisted.erase(found);
        }
    };
    // The Trash last: what another group lists as well has not been deleted.
    QList<FocusGroup> groups = snapshot.groups();
    std::stable_partition(groups.begin(), groups.end(), [](const FocusGroup& group) {
        return group.id() != TaskStorage::ms_trashId;
    });
    for (const FocusGroup& group : std::as_const(groups))
        collectGroup(group);
    return !stop.stop_requested();
}

void SearchCorpus::_append(const TodoTask& task, EState state)
{
    Entry entry{task.id(), task.rawTimes().due, state, m_texts.size(), 0, 0};
    _appendText(task.name());
    entry.notes = m_texts.size();
    _appendText(task.notes());
    entry.end = m_texts.size();
    m_entries.append(entry);
}

void SearchCorpus::_appendText(const QString& text)
{
    m_folded.assign(text);
    m_texts += m_folded.view();
}
