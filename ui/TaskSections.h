// Which of the three numbers of a count bar each task counts in.
#pragma once

#include "taskdb/FocusGroup.h"

#include <QHash>

#include <array>

/// Remembers what each task counted as, so that one changed task costs the same in groups of any
/// size. Knows the tasks of the shared store. Right for the day on which it was made or cleared.
class TaskSections
{
public:
    static constexpr int none = -1; ///< a completed task, or one that is gone
    static constexpr int dueNow = 0;
    static constexpr int dueSoon = 1;
    static constexpr int later = 2; ///< also without any due date
    using Counts = std::array<int, 3>;

    struct Change
    {
        int before;
        int after;
    };

    TaskSections() { clear(); }

    /// The task changed: what it counted as, and counts as now. The same twice for a task that was
    /// never counted.
    Change update(const TodoTask::Id& id);
    [[nodiscard]] Counts count(const TaskIdList& tasks);
    /// Forgets everything; it may be another day.
    void clear();

private:
    [[nodiscard]] int _read(const TodoTask::Id& id) const;

    QHash<TodoTask::Id, qint8> m_known;
    // The first moments, in milliseconds since 1970, that count as soon and as later.
    qint64 m_soon = 0;
    qint64 m_later = 0;
};
