// The tasks that a search goes through.
#pragma once

#include "taskdb/TodoTask.h"
#include "taskdb/search/FoldedText.h"

#include <QList>

#include <stop_token>
#include <string>
#include <string_view>

class TaskStorage;
class TaskStorageSnapsot;

/// What the store held when it was last looked at: each task that a group lists, once. The texts
/// lie folded in one piece of memory: going from record to record, where they are scattered, takes
/// several times as long as the comparing. One thread at a time, which need not be the store's.
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
        TodoTask::Id id;
        qint64 due = 0; ///< as TodoTask::RawTimes has it
        EState state = Open;
        // In the folded texts; the notes go up to `end`.
        std::size_t name = 0;
        std::size_t notes = 0;
        std::size_t end = 0;
    };

    /// Looks at the store, if it has changed since. Returns false if it was stopped; then there
    /// are no entries to go through.
    [[nodiscard]] bool follow(const TaskStorage& storage, const std::stop_token& stop);
    [[nodiscard]] const QList<Entry>& entries() const { return m_entries; }
    [[nodiscard]] std::u16string_view name(const Entry& entry) const
    {
        return std::u16string_view(m_texts).substr(entry.name, entry.notes - entry.name);
    }
    [[nodiscard]] std::u16string_view notes(const Entry& entry) const
    {
        return std::u16string_view(m_texts).substr(entry.notes, entry.end - entry.notes);
    }

private:
    [[nodiscard]] bool _collect(const TaskStorageSnapsot& snapshot, const std::stop_token& stop);
    void _append(const TodoTask& task, EState state);
    void _appendText(const QString& text);

    qint32 m_modification = -1; // none of the store's
    QList<Entry> m_entries;
    std::u16string m_texts;
    FoldedText m_folded; // scratch memory
};
