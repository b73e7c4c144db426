#include "taskdb/TaskStorageSnapsot.h"

void TaskStorageSnapsot::assign(qint32 modification, const QList<FocusGroup>& groups,
                                const TaskTable::Pages& pages)
{
    m_modification = modification;
    m_groups = groups;
    m_pages = pages;
    m_content.reset();
}

const TaskStorageSnapsot::Content& TaskStorageSnapsot::_content() const
{
    if (!m_content)
        m_content = std::make_unique<const Content>(m_asTables ? _tables() : _lists());
    return *m_content;
}

TaskStorageSnapsot::Content TaskStorageSnapsot::_lists() const
{
    Content content;
    content.groups = m_groups;
    for (const TaskTable::Page& page : m_pages)
        content.tasks.append(page);
    return content;
}

TaskStorageSnapsot::Content TaskStorageSnapsot::_tables() const
{
    Content content;
    for (const FocusGroup& group : m_groups)
        content.groupTable.insert(group.id(), group);
    for (const TaskTable::Page& page : m_pages) {
        for (const TodoTask& task : page)
            content.taskTable.insert(task.id(), task);
    }
    return content;
}
