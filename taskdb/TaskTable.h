// All task records by identifier.
#pragma once

#include "taskdb/TodoTask.h"

#include <QHash>
#include <QList>

/// Records are added and changed, never erased. They lie in pages, so that a copy of all of them
/// takes microseconds, and the first change after it duplicates one page instead of the table.
class TaskTable
{
public:
    using Page = QList<TodoTask>;
    using Pages = QList<Page>;

    [[nodiscard]] qsizetype size() const { return m_slots.size(); }
    [[nodiscard]] bool contains(const TodoTask::Id& id) const { return m_slots.contains(id); }
    /// The record, or an empty one.
    [[nodiscard]] TodoTask value(const TodoTask::Id& id) const;
    /// The record to change in place, or null; valid until the next call.
    [[nodiscard]] TodoTask* find(const TodoTask::Id& id);
    void insert(const TodoTask& task);
    /// Makes room for so many records in all.
    void reserve(qsizetype count) { m_slots.reserve(count); }
    /// A shared copy of all records.
    [[nodiscard]] const Pages& pages() const { return m_pages; }

private:
    Pages m_pages;
    QHash<TodoTask::Id, quint32> m_slots; // position of each record, counted through the pages
};
