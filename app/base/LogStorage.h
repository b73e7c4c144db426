// Log messages kept in memory, for a view of the log.
#pragma once

#include "app/base/LogHelper.h"

#include <QDateTime>
#include <QList>
#include <QMutex>

#include <atomic>

namespace logging {

struct SLogMsg
{
    QDateTime time;
    ESeverity severity = information;
    QString text;
};

/// The last 100001 messages. Any thread may add.
class LogStorage
{
public:
    void add(const QDateTime& time, ESeverity severity, const QString& text);

    /// Whether anything was added since the last call. Takes no lock.
    bool isModified();

    /// A shared copy of the messages, oldest first.
    [[nodiscard]] QList<SLogMsg> messages() const;

private:
    QList<SLogMsg> m_messages;
    mutable QMutex m_mutex;
    std::atomic<bool> m_modified = false;
};

} // namespace logging
