#include "taskdb/search/SearchCorpus.h"

#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageSnapsot.h"

void SearchCorpus::follow(const TaskStorage& storage)
{
    if (storage.modification() == m_modification)
        return;
    TaskStorageSnapsot snapshot;
    storage.takeSnapshot(snapshot);
    m_entries.clear();
    _collect(snapshot);
    m_modification = snapshot.modification();
}

void SearchCorpus::_collect(const TaskStorageSnapsot& snapshot)
{
    const QList<TodoTask>& tasks = snapshot.tasks();
    QHash<TodoTask::Id, qsizetype> unlisted;
    unlisted.reserve(tasks.size());
    for (qsizetype i = 0; i < tasks.size(); ++i)
        unlisted.insert(tasks.at(i).id(), i);
    m_entries.reserve(tasks.size());
    const auto collectGroup = [&](const FocusGroup& group) {
        const bool isTrash = group.id() == TaskStorage::ms_trashId;
        for (const TodoTask::Id& id : group.tasks()) {
            const auto found = unlisted.constFind(id);
            if (found == unlisted.cend())
                continue;
            const TodoTask& task = tasks.at(*found);
            m_entries.append({task, isTrash ? Deleted : task.completed() ? Done : Open});
            unlisted.erase(found);
        }
    };
    // The Trash last: what another group lists as well has not been deleted.
    for (const FocusGroup& group : snapshot.groups()) {
        if (group.id() != TaskStorage::ms_trashId)
            collectGroup(group);
    }
    for (const FocusGroup& group : snapshot.groups()) {
        if (group.id() == TaskStorage::ms_trashId)
            collectGroup(group);
    }
}
