#include "app/base/LogStorage.h"

#include <QMutexLocker>

namespace logging {

namespace {
constexpr qsizetype keptMessages = 100000;
}

void LogStorage::add(const QDateTime& time, ESeverity severity, const QString& text)
{
    const QMutexLocker lock(&m_mutex);
    if (m_messages.size() > keptMessages)
        m_messages.removeFirst();
    m_messages.append({time, severity, text});
    m_modified = true;
}

bool LogStorage::isModified()
{
    return m_modified.exchange(false);
}

QList<SLogMsg> LogStorage::messages() const
{
    const QMutexLocker lock(&m_mutex);
    return m_messages;
}

} // namespace logging
