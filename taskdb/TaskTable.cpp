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
    const qsizetype count = m_slots.size();
    quint32& slot = m_slots[task.id()];
    if (m_slots.size() == count) {
        m_pages[slot / pageSize][slot % pageSize] = task;
        return;
    }
    slot = static_cast<quint32>(count);
    if (slot % pageSize == 0)
        m_pages.append(Page());
    m_pages.last().append(task);
}
