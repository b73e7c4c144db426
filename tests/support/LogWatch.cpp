#include "tests/support/LogWatch.h"

#include "app/base/LogHelper.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

LogWatch::LogWatch()
    : m_file(m_dir.filePath(u"log.txt"_s))
{
    if (!dynamic_singleton<logging::LogHelper>::inst().init(m_file.fileName()) ||
        !m_file.open(QIODevice::ReadOnly))
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

QStringList LogWatch::take()
{
    static const QRegularExpression frame(u"^(\\w+) +\\S+ +.*?,\\d+: "_s);
    dynamic_singleton<logging::LogHelper>::inst().flush();
    QStringList lines = QString::fromUtf8(m_file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    return lines.replaceInStrings(frame, u"\\1 "_s);
}
