// The program's log file and the macros that write to it.
#pragma once

#include "app/base/dynamic_singleton.h"

#include <QFile>
#include <QMutex>

namespace logging {

enum ESeverity : int
{
    critical = 0,
    warning = 1,
    information = 2,
    debug = 3
};

/// Appends lines to the log file. Any thread may log; lines never interleave. Without an open
/// file every message is dropped.
class LogHelper : public QFile
{
    Q_OBJECT

public:
    LogHelper();
    /// Flushes and closes the file.
    ~LogHelper() override;
    Q_DISABLE_COPY_MOVE(LogHelper)

    /// Opens `path` for appending, closing any file open before; a new one is for this user only.
    /// Returns whether it opened.
    bool init(const QString& path);

    void err(const QString& text) { _common(critical, text); }
    void warn(const QString& text) { _common(warning, text); }
    void info(const QString& text) { _common(information, text); }
    void debug(const QString& text) { _common(logging::debug, text); }

    /// Hands the buffered lines to the system. What does not fit on a full disk stays buffered
    /// for the next call. Does nothing if other threads keep the log busy for longer than
    /// `patienceMs` milliseconds, -1 for any time.
    void flush(int patienceMs = -1);

    /// `text` behind the caller's signature and line, while source locations are on.
    [[nodiscard]] QString located(const char* function, int line, const QString& text) const;

    void _common(ESeverity severity, const QString& text);
    void _write(const QDateTime& time, ESeverity severity, const QString& text);
    /// The word of a severity; empty for any other value.
    [[nodiscard]] static QString _severityStr(ESeverity severity);

private:
    QMutex m_mutex;
    int m_maxSeverity = warning;
    bool m_sourceLocation = true;
};

} // namespace logging

// The signature in the prefix is the caller's: never use these inside a lambda.
#define MVR_LOG_AS(method, text)                                                                   \
    do {                                                                                           \
        logging::LogHelper& mvrLog = dynamic_singleton<logging::LogHelper>::inst();                \
        mvrLog.method(mvrLog.located(Q_FUNC_INFO, __LINE__, text));                                \
    } while (false)
#define MVR_LOG_ERR(text) MVR_LOG_AS(err, text)
#define MVR_LOG_WARN(text) MVR_LOG_AS(warn, text)
#define MVR_LOG_INFO(text) MVR_LOG_AS(info, text)
#define MVR_LOG_DEBUG(text) MVR_LOG_AS(debug, text)
