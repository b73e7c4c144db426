// What one drag inside the program carries.
#pragma once

#include "taskdb/FocusGroup.h"

#include <QHash>
#include <QList>

/// The tasks or the group being dragged, and what became of them. Source and targets share it
/// through DragHelper: the source fills it, the target that takes the drop writes the result.
class DragGroup
{
public:
    enum EDragType
    {
        TasksDrag = 0, ///< tasks, by the group that they come from
        GroupDrag = 1, ///< one custom group
    };

    enum EResult
    {
        NotDropped = 0,
        Copied = Qt::CopyAction,
        Moved = Qt::MoveAction,
        Reordered = 3, ///< the task list moved its own rows
    };

    explicit DragGroup(EDragType type)
        : m_type(type)
    {
    }

    [[nodiscard]] EDragType type() const { return m_type; }

    [[nodiscard]] int result() const { return m_result; }
    void setResult(int result) { m_result = result; }

    /// Whether the user asked for a copy; a target may move all the same.
    [[nodiscard]] bool isCopy() const { return m_copy; }
    void setCopy(bool copy) { m_copy = copy; }

    void addTask(const FocusGroup::Id& groupId, const TodoTask::Id& taskId);
    [[nodiscard]] bool hasTask(const TodoTask::Id& taskId) const;
    /// By source group, in the order they were added.
    [[nodiscard]] const QHash<FocusGroup::Id, QList<TodoTask::Id>>& tasks() const
    {
        return m_tasks;
    }

    /// The group of a group drag; null otherwise.
    [[nodiscard]] FocusGroup::Id groupId() const { return m_groupId; }
    void setGroupId(const FocusGroup::Id& id) { m_groupId = id; }

private:
    EDragType m_type;
    int m_result = NotDropped;
    bool m_copy = false;
    QHash<FocusGroup::Id, QList<TodoTask::Id>> m_tasks;
    FocusGroup::Id m_groupId;
};
