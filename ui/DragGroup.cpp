#include "ui/DragGroup.h"

#include <algorithm>

void DragGroup::addTask(const FocusGroup::Id& groupId, const TodoTask::Id& taskId)
{
    m_tasks[groupId].append(taskId);
}

bool DragGroup::hasTask(const TodoTask::Id& taskId) const
{
    return std::any_of(m_tasks.cbegin(), m_tasks.cend(),
                       [&taskId](const QList<TodoTask::Id>& ids) { return ids.contains(taskId); });
}
