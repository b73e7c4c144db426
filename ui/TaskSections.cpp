#include "ui/TaskSections.h"

#include "app/base/Clock.h"
#include "app/core/TaskCore.h"

namespace {
constexpr int soonDays = 2;
}

void TaskSections::clear()
{
    m_known.clear();
    const QDate today = Clock::today();
    m_soon = today.addDays(1).startOfDay().toMSecsSinceEpoch();
    m_later = today.addDays(soonDays + 1).startOfDay().toMSecsSinceEpoch();
}

int TaskSections::_read(const TodoTask::Id& id) const
{
    const TodoTask task = taskStorage().get(id);
    if (task.id().isNull() || task.completed())
        return none;
    // Not by calendar dates: for a hundred thousand tasks they would take a tenth of a second.
    const qint64 due = task.rawTimes().due;
    if (due == TodoTask::noTime || due >= m_later)
        return later;
    return due >= m_soon ? dueSoon : dueNow;
}

TaskSections::Change TaskSections::update(const TodoTask::Id& id)
{
    const auto known = m_known.find(id);
    if (known == m_known.end()) {
        const int section = _read(id);
        return {section, section};
    }
    const Change change = {*known, _read(id)};
    *known = static_cast<qint8>(change.after);
    return change;
}

TaskSections::Counts TaskSections::count(const TaskIdList& tasks)
{
    Counts counts = {};
    for (const TodoTask::Id& id : tasks) {
        auto known = m_known.find(id);
        if (known == m_known.end())
            known = m_known.insert(id, static_cast<qint8>(_read(id)));
        if (*known != none)
            ++counts.at(static_cast<size_t>(*known));
    }
    return counts;
}
