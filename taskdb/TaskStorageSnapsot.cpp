#include "taskdb/TaskStorageSnapsot.h"

#include <utility>

const QList<FocusGroup>& TaskStorageSnapsot::groups() const
{
    _build();
    return m_groups;
}

const QList<TodoTask>& TaskStorageSnapsot::tasks() const
{
    _build();
    return m_tasks;
}

const TaskStorageSnapsot::GroupTable& TaskStorageSnapsot::groupTable() const
{
    _build();
    return m_groupTable;
}

const TaskStorageSnapsot::RecordTable& TaskStorageSnapsot::taskTable() const
{
    _build();
    return m_taskTable;
}

void TaskStorageSnapsot::assign(qint32 modification, const QList<FocusGroup>& groups,
                                const TaskTable::Pages& pages)
{
    *this = TaskStorageSnapsot(m_asTables);
    m_modification = modification;
    m_rawGroups = groups;
    m_pages = pages;
}

void TaskStorageSnapsot::_build() const
{
    const QList<FocusGroup> groups = std::exchange(m_rawGroups, {});
    const TaskTable::Pages pages = std::exchange(m_pages, {});
    if (!m_asTables) {
        if (!groups.isEmpty())
            m_groups = groups;
        for (const TaskTable::Page& page : pages)
            m_tasks.append(page);
        return;
    }
    for (const FocusGroup& group : groups)
        m_groupTable.insert(group.id(), group);
    for (const TaskTable::Page& page : pages) {
        for (const TodoTask& task : page)
            m_taskTable.insert(task.id(), task);
    }
}
