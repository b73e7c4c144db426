#include "app/base/LogHelper.h"

#include "app/base/Clock.h"

#include <QDateTime>
#include <QMutexLocker>

using namespace Qt::StringLiterals;

namespace logging {

LogHelper::LogHelper() = default;

LogHelper::~LogHelper()
{
    flush();
    close();
}

bool LogHelper::init(const QString& path)
{
    const QMutexLocker lock(&m_mutex);
    if (isOpen())
        close();
    setFileName(path);
    return open(WriteOnly | Append | Text, ReadOwner | WriteOwner);
}

void LogHelper::flush(int patienceMs)
{
    if (!m_mutex.tryLock(patienceMs))
        return;
    // One call hands over one block of the buffer, which has more of them after a failed write.
    while (isOpen() && QFile::flush() && bytesToWrite() > 0) {
    }
    m_mutex.unlock();
}

QString LogHelper::located(const char* function, int line, const QString& text) const
{
    if (!m_sourceLocation)
        return text;
    return QString::fromLatin1(function) + u',' + QString::number(line) + u": " + text;
}

void LogHelper::_common(ESeverity severity, const QString& text)
{
    if (severity > m_maxSeverity)
        return;
    _write(Clock::now(), severity, text);
}

void LogHelper::_write(const QDateTime& time, ESeverity severity, const QString& text)
{
    // The milliseconds are not padded: 5 ms reads ".5".
    const QString stamp = time.toString(Qt::ISODate) + u'.' + QString::number(time.time().msec());
    QString line =
        _severityStr(severity).leftJustified(15) + u' ' + stamp.leftJustified(25) + u' ' + text;
    line.replace(u'\n', u'#');
    const QByteArray bytes = line.toUtf8() + '\n';

    const QMutexLocker lock(&m_mutex);
    // One write, so that a full disk drops a whole line or none of it.
    if (isOpen())
        write(bytes);
}

QString LogHelper::_severityStr(ESeverity severity)
{
    switch (severity) {
    case critical:
        return u"Critical"_s;
    case warning:
        return u"Warning"_s;
    case information:
        return u"Information"_s;
    case logging::debug:
        return u"Debug"_s;
    }
    return {};
}

} // namespace logging
