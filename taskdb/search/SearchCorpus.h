// The tasks that a search goes through.
#pragma once

#include "taskdb/TodoTask.h"

#include <QList>

class TaskStorage;
class TaskStorageSnapsot;

/// What the store held when it was last looked at: each task that a group lists, once. One thread
/// at a time, which need not be the store's.
class SearchCorpus
{
public:
    /// In the order in which they are shown.
    enum EState
    {
        Open = 0,
        Done = 1,
        Deleted = 2, ///< only the Trash lists it
    };

    struct Entry
    {
        TodoTask task;
        EState state = Open;
    };

    /// Looks at the store, if it has changed since.
    void follow(const TaskStorage& storage);
    [[nodiscard]] const QList<Entry>& entries() const { return m_entries; }

private:
    void _collect(const TaskStorageSnapsot& snapshot);

    qint32 m_modification = -1; // none of the store's
    QList<Entry> m_entries;
};
