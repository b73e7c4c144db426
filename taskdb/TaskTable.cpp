#include "taskdb/TaskTable.h"

namespace {
constexpr quint32 pageSize = 256;
}

TodoTask TaskTable::value(const TodoTask::Id& id) const
{
    const auto slot = m_slots.constFind(id);
    if (slot == m_slots.constEnd())
        return {};
    return m_pages.at(*slot / pageSize).at(*slot % pageSize);
}

TodoTask* TaskTable::find(const TodoTask::Id& id)
{
    const auto slot = m_slots.constFind(id);
    if (slot == m_slots.constEnd())
        return nullptr;
    return &m_pages[*slot / pageSize][*slot % pageSize];
}

void TaskTable::insert(const TodoTask& task)
{
    if (TodoTask* known = find(task.id())) {
        *known = task;
        return;
    }
    const auto slot = static_cast<quint32>(m_slots.size());
    if (slot % pageSize == 0)
        m_pages.append(Page());
    m_pages.last().append(task);
    m_slots.insert(task.id(), slot);
}
