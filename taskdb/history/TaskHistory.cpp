#include "taskdb/history/TaskHistory.h"

#include "taskdb/TaskStorage.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

FocusGroup::Id HistoryChange::groupToShow(const TaskStorage& store,
                                          const FocusGroup::Id& shown) const
{
    const FocusGroup own = store.getGroup(action.group.isNull() ? shown : action.group);
    if (isSeenIn(own))
        return own.id();
    QList<FocusGroup::Id> groups;
    store.enumGroups(groups);
    // What is lying in an archive is shown there only where nothing else is to be seen.
    groups.removeIf(&TaskStorage::isArchive);
    const auto found = std::find_if(groups.cbegin(), groups.cend(), [&](const FocusGroup::Id& id) {
        return isSeenIn(store.getGroup(id));
    });
    if (found != groups.cend())
        return *found;
    if (!action.group.isNull())
        return own.id();
    // A group that has come, or tasks that lie in an archive only.
    groups = difference.groups.keys() + QList{TaskStorage::ms_completedId, TaskStorage::ms_trashId};
    const auto last = std::find_if(groups.cbegin(), groups.cend(), [&](const FocusGroup::Id& id) {
        return !TaskStorage::isArchive(id) || isSeenIn(store.getGroup(id));
    });
    return last == groups.cend() ? own.id() : store.getGroup(*last).id();
}

bool HistoryChange::isSeenIn(const FocusGroup& group) const
{
    const auto held = [&group](const TodoTask::Id& id) { return group.contains(id); };
    return !difference.groups.value(group.id()).isEmpty() ||
           std::any_of(difference.tasks.cbegin(), difference.tasks.cend(), held) ||
           std::any_of(action.tasks.cbegin(), action.tasks.cend(), held);
}

QSet<TodoTask::Id> HistoryChange::tasksToSelect(const TaskStorage& store,
                                                const FocusGroup::Id& group) const
{
    const FocusGroup record = store.getGroup(group);
    const QList<TodoTask::Id> added = difference.groups.value(group);
    QSet<TodoTask::Id> ids(added.cbegin(), added.cend());
    for (const TodoTask::Id& id : difference.tasks + action.tasks) {
        if (record.contains(id))
            ids.insert(id);
    }
    return ids;
}

TaskHistory::TaskHistory(TaskStorage& store, size_t maxSteps)
    : m_store(store)
    , m_maxSteps(maxSteps)
{
    m_store.setJournal(this);
}

TaskHistory::~TaskHistory()
{
    m_store.setJournal(nullptr);
}

void TaskHistory::begin(const HistoryAction& action)
{
    if (!m_running.isEmpty())
        Q_EMIT interrupting();
    _cut();
    m_running.append(action);
}

void TaskHistory::end()
{
    _cut();
    m_running.removeLast();
}

void TaskHistory::changeCounted()
{
    if (!m_exchanging && m_running.isEmpty())
        _cut();
    Q_EMIT touched();
}

/// Makes a step of what was changed until now.
void TaskHistory::_cut()
{
    if (replaced.isEmpty())
        return;
    Step step{m_running.isEmpty() ? HistoryAction() : m_running.constLast(), {}};
    std::swap(step.delta, replaced);
    created.clear();
    m_store.prune(step.delta);
    if (step.delta.isEmpty())
        return;
    _push(step);
    Q_EMIT stepDone(step.action);
}

void TaskHistory::_push(const Step& step)
{
    m_undone.clear();
    m_done.push_back(step);
    if (m_done.size() > m_maxSteps)
        m_done.pop_front();
}

EAction TaskHistory::actionToUndo() const
{
    if (!m_running.isEmpty() && _changesNow())
        return m_running.constLast().kind;
    return m_done.empty() ? EAction::other : m_done.back().action.kind;
}

EAction TaskHistory::actionToRedo() const
{
    return m_undone.empty() ? EAction::other : m_undone.back().action.kind;
}

/// Whether what was changed since the last step is not as it was before.
bool TaskHistory::_changesNow() const
{
    StoreDelta changed = replaced;
    m_store.prune(changed);
    return !changed.isEmpty();
}

void TaskHistory::undo()
{
    _cut();
    _exchange(m_done, m_undone, HistoryChange::undone);
}

void TaskHistory::redo()
{
    _cut();
    _exchange(m_undone, m_done, HistoryChange::redone);
}

void TaskHistory::_exchange(std::deque<Step>& from, std::deque<Step>& to, HistoryChange::EWay way)
{
    if (from.empty())
        return;
    Step step = std::move(from.back());
    from.pop_back();
    HistoryChange change{step.action, way, {}};
    {
        const QScopedValueRollback exchanging(m_exchanging, true);
        change.difference = m_store.exchange(step.delta);
    }
    to.push_back(std::move(step));
    Q_EMIT replacedContent(change);
}

void TaskHistory::apply(const HistoryAction& action, const StoreDelta& delta)
{
    _cut();
    Step step{action, delta};
    m_store.prune(step.delta);
    if (step.delta.isEmpty())
        return;
    HistoryChange change{action, HistoryChange::applied, {}};
    {
        const QScopedValueRollback exchanging(m_exchanging, true);
        change.difference = m_store.exchange(step.delta);
    }
    _push(step);
    Q_EMIT replacedContent(change);
}
