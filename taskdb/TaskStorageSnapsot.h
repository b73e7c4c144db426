// A consistent copy of the store, for the writer and the export.
#pragma once

#include "taskdb/FocusGroup.h"
#include "taskdb/TaskTable.h"

#include <memory>

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
    [[nodiscard]] const QList<FocusGroup>& groups() const { return _content().groups; }
    [[nodiscard]] const QList<TodoTask>& tasks() const { return _content().tasks; }
    // The table form; empty in a snapshot of lists.
    [[nodiscard]] const GroupTable& groupTable() const { return _content().groupTable; }
    [[nodiscard]] const RecordTable& taskTable() const { return _content().taskTable; }

    /// Replaces the content; the form stays.
    void assign(qint32 modification, const QList<FocusGroup>& groups,
                const TaskTable::Pages& pages);

private:
    struct Content
    {
        QList<FocusGroup> groups;
        QList<TodoTask> tasks;
        GroupTable groupTable;
        RecordTable taskTable;
    };

    [[nodiscard]] const Content& _content() const;
    [[nodiscard]] Content _lists() const;
    [[nodiscard]] Content _tables() const;

    qint32 m_modification = 0;
    bool m_asTables = false;
    QList<FocusGroup> m_groups;
    TaskTable::Pages m_pages;
    mutable std::unique_ptr<const Content> m_content; // in the asked form, once it was read
};
