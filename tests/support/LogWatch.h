// The program's log, caught by a test.
#pragma once

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

/// Sends the log to a file of its own and reads it back. A test takes the lines it expects; it
/// fails when any are left at the end.
class LogWatch
{
public:
    LogWatch();
    ~LogWatch();
    Q_DISABLE_COPY_MOVE(LogWatch)

    /// The lines since the last call, as "Severity message", without time and source location.
    [[nodiscard]] QStringList take();

private:
    QTemporaryDir m_dir;
    QFile m_file;
};
