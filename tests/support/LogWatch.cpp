#include "tests/support/LogWatch.h"

#include "app/base/LogHelper.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

LogWatch::LogWatch()
{
    if (!dynamic_singleton<logging::LogHelper>::inst().init(path()))
        qFatal("the log could not be opened");
}

LogWatch::~LogWatch()
{
    const QStringList unannounced = take();
    if (!unannounced.isEmpty())
        QTest::qFail(qPrintable(u"unexpected in the log: "_s + unannounced.join(u" / "_s)),
                     __FILE__, __LINE__);
    dynamic_singleton<logging::LogHelper>::destroy();
}

QString LogWatch::path() const
{
    return m_dir.filePath(u"log.txt"_s);
}

QStringList LogWatch::takeRaw()
{
    dynamic_singleton<logging::LogHelper>::inst().flush();
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly))
        return {u"the log is gone"_s};
    file.seek(m_read);
    const QString text = QString::fromUtf8(file.readAll());
    m_read = file.pos();
    return text.split(u'\n', Qt::SkipEmptyParts);
}

QStringList LogWatch::take()
{
    static const QRegularExpression frame(u"^(\\w+) +\\S+ +.*?,\\d+: (.*)$"_s);
    QStringList lines = takeRaw();
    for (QString& line : lines) {
        const QRegularExpressionMatch match = frame.match(line);
        if (match.hasMatch())
            line = match.captured(1) + u' ' + match.captured(2);
    }
    return lines;
}
