// The program's log, caught by a test.
#pragma once

#include "app/base/LogHelper.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

/// Sends the log to a file of its own and reads it back. A test takes the lines it expects; it
/// fails when any are left at the end.
class LogWatch
{
public:
    LogWatch()
        : m_file(m_dir.filePath(QStringLiteral("log.txt")))
    {
        if (!dynamic_singleton<logging::LogHelper>::inst().init(m_file.fileName()) ||
            !m_file.open(QIODevice::ReadOnly))
            qFatal("the log could not be opened");
    }
    ~LogWatch()
    {
        const QString unannounced = take().join(QStringLiteral(" / "));
        if (!unannounced.isEmpty())
            QTest::qFail(qPrintable(QStringLiteral("unexpected in the log: ") + unannounced),
                         __FILE__, __LINE__);
        dynamic_singleton<logging::LogHelper>::destroy();
    }
    Q_DISABLE_COPY_MOVE(LogWatch)

    /// The lines since the last call, as "Severity message", without time and source location.
    [[nodiscard]] QStringList take()
    {
        static const QRegularExpression frame(QStringLiteral("^(\\w+) +\\S+ +.*?,\\d+: "));
        dynamic_singleton<logging::LogHelper>::inst().flush();
        QStringList lines = QString::fromUtf8(m_file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        return lines.replaceInStrings(frame, QStringLiteral("\\1 "));
    }

private:
    QTemporaryDir m_dir;
    QFile m_file;
};
