// The log: lines as they reach the file, from any thread.
#include "app/base/Clock.h"
#include "app/base/LogHelper.h"
#include "tests/base/Files.h"

#include <QMap>
#include <QTemporaryDir>

#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using logging::LogHelper;

class TestLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Clock::release(); }

    void lines()
    {
        LogHelper log;
        QVERIFY(log.init(m_path));
        Clock::freeze(QDateTime({2024, 2, 3}, QTime(4, 5, 6, 123)));
        log.err(u"%1 ж"_s);
        log.info(u"too little"_s);
        log.debug(u"too little"_s);
        Clock::freeze(QDateTime({2024, 2, 3}, QTime(4, 5, 6, 5)));
        QVERIFY2(log.init(m_path), "the next start goes on where this one ends");
        log.warn(u"\na\n\nb\n"_s);
        log.flush();
        QCOMPARE(contentsOf(m_path), "Critical        2024-02-03T04:05:06.123   %1 \xD0\xB6\n"
                                     "Warning         2024-02-03T04:05:06.5     #a##b#\n"_ba);
    }

    void linesOfThreadsStayWhole()
    {
        constexpr int lineCount = 3000;
        LogHelper log;
        QVERIFY(QFile::remove(m_path) && log.init(m_path));
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&log, t] {
                for (int i = 0; i < lineCount; ++i)
                    log.err(QString(1 + i % 90, QChar(u'0' + t)) + u'|' + QString::number(i));
            });
        }
        threads.clear();
        log.flush();
        QMap<char, int> next;
        QByteArrayList lines = contentsOf(m_path).split('\n');
        QCOMPARE(lines.takeLast(), QByteArray());
        for (const QByteArray& line : std::as_const(lines)) {
            const char digit = line.at(42);
            const int i = next[digit]++;
            QCOMPARE(line.mid(42), QByteArray(1 + i % 90, digit) + '|' + QByteArray::number(i));
        }
        QCOMPARE(next.values(), QList<int>(4, lineCount));
    }

private:
    const QTemporaryDir m_dir;
    const QString m_path = m_dir.filePath(u"log.txt"_s);
};

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
