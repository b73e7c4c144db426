// How the store notes what it replaces, and puts it back.
#include "taskdb/StoreDelta.h"

#include "taskdb/TaskStorage.h"

#include <QMutexLocker>

#include <utility>

void TaskStorage::setJournal(StoreJournal* journal)
{
    const QMutexLocker lock(&m_lock);
    m_journal = journal;
}

/// To be called before the group changes, comes or goes.
void TaskStorage::_noteGroup(const FocusGroup::Id& id)
{
    if (!m_journal || m_journal->replaced.groups.contains(id))
        return;
    const auto group = m_groups.constFind(id);
    m_journal->replaced.groups.insert(id, group == m_groups.cend() ? std::nullopt
                                                                   : std::optional(group->image()));
}

/// To be called before custom groups come, go or change places.
void TaskStorage::_noteOrder()
{
    if (m_journal && !m_journal->replaced.order)
        m_journal->replaced.order = m_groupOrder;
}

void TaskStorage::prune(StoreDelta& delta) const
{
    const QMutexLocker lock(&m_lock);
    delta.tasks.removeIf([this](decltype(delta.tasks)::iterator kept) {
        return m_tasks.value(kept.key()) == *kept;
    });
    delta.groups.removeIf([this](decltype(delta.groups)::iterator kept) {
        const auto group = m_groups.constFind(kept.key());
        return group == m_groups.cend() ? !*kept : *kept == group->image();
    });
    if (delta.order == m_groupOrder)
        delta.order.reset();
}

StoreDifference TaskStorage::exchange(StoreDelta& delta)
{
    const QMutexLocker lock(&m_lock);
    StoreDifference difference;
    delta.tasks.removeIf([&](decltype(delta.tasks)::iterator kept) {
        difference.tasks.append(kept.key());
        TodoTask* task = m_tasks.find(kept.key());
        if (task)
            std::swap(*task, *kept);
        else
            m_tasks.insert(*kept);
        return !task;
    });
    for (auto kept = delta.groups.begin(); kept != delta.groups.end(); ++kept)
        _exchangeGroup(kept.key(), *kept, difference);
    if (delta.order) {
        std::swap(*delta.order, m_groupOrder);
        difference.panel = true;
    }
    _modify();
    for (const TodoTask::Id& id : std::as_const(difference.tasks))
        Q_EMIT taskChanged(id);
    for (const FocusGroup::Id& id : difference.groups.keys())
        Q_EMIT groupChanged(id);
    return difference;
}

void TaskStorage::_exchangeGroup(const FocusGroup::Id& id, std::optional<GroupImage>& kept,
                                 StoreDifference& difference)
{
    FocusGroup* group = _findGroup(id);
    if (!group && !kept)
        return;
    std::optional<GroupImage> before;
    if (group)
        before = group->image();
    if (!before || !kept || before->name != kept->name || before->iconName != kept->iconName)
        difference.panel = true;
    if (!kept) {
        m_groups.remove(id);
    } else {
        if (!group) {
            FocusGroup fresh;
            fresh.load(id.toString(), {});
            group = &*m_groups.insert(id, fresh);
        }
        GroupImage image = *kept;
        const QList<TodoTask::Id> added = group->_exchange(image);
        if (!before || before->tasks != kept->tasks)
            difference.groups.insert(id, added);
    }
    kept = before;
}
