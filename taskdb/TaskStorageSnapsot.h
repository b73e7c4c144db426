// A consistent copy of the store, for the writer and the export.
#pragma once

#include "taskdb/FocusGroup.h"
#include "taskdb/TaskTable.h"

/// Filled by TaskStorage::takeSnapshot() in one of two forms: lists in file order, or tables by
/// identifier. Taking it copies shared containers only; the asked form is put together when it
/// is first read, outside the store's lock. One thread at a time.
class TaskStorageSnapsot
{
public:
    using GroupTable = QHash<FocusGroup::Id, FocusGroup>;
    using RecordTable = QHash<TodoTask::Id, TodoTask>;

    explicit TaskStorageSnapsot(bool asTables = false)
        : m_asTables(asTables)
    {
    }

    [[nodiscard]] qint32 modification() const { return m_modification; }
    [[nodiscard]] bool asTables() const { return m_asTables; }

    // The list form; empty in a snapshot of tables.
    [[nodiscard]] const QList<FocusGroup>& groups() const;
    [[nodiscard]] const QList<TodoTask>& tasks() const;
    // The table form; empty in a snapshot of lists.
    [[nodiscard]] const GroupTable& groupTable() const;
    [[nodiscard]] const RecordTable& taskTable() const;

    /// Replaces the content; the form stays.
    void assign(qint32 modification, const QList<FocusGroup>& groups,
                const TaskTable::Pages& pages);

private:
    void _build() const;

    qint32 m_modification = 0;
    bool m_asTables = false;
    mutable QList<FocusGroup> m_groups;
    mutable QList<TodoTask> m_tasks;
    mutable GroupTable m_groupTable;
    mutable RecordTable m_taskTable;
    // What is still to be put together.
    mutable QList<FocusGroup> m_rawGroups;
    mutable TaskTable::Pages m_pages;
};
