// The log: lines as they reach the file, from any thread and on a full disk.
#include "app/base/Clock.h"
#include "app/base/LogHelper.h"
#include "tests/base/Files.h"
#include "tests/support/DiskFaults.h"

#include <QMap>
#include <QTemporaryDir>

#include <cerrno>
#include <memory>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using logging::LogHelper;

class TestLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }
    void cleanup()
    {
        DiskFaults::reset();
        Clock::release();
    }

    void lines()
    {
        LogHelper log;
        QVERIFY(log.init(_path()));
        Clock::freeze(QDateTime({2024, 2, 3}, QTime(4, 5, 6, 123)));
        log.err(u"%1 ж"_s);
        log.info(u"too little"_s);
        log.debug(u"too little"_s);
        Clock::freeze(QDateTime({2024, 2, 3}, QTime(4, 5, 6, 5)));
        QVERIFY2(log.init(_path()), "the next start goes on where this one ends");
        log.warn(u"\na\n\nb\n"_s);
        log.flush();
        QCOMPARE(contentsOf(_path()), "Critical        2024-02-03T04:05:06.123   %1 \xD0\xB6\n"
                                      "Warning         2024-02-03T04:05:06.5     #a##b#\n"_ba);
    }

    void linesOfThreadsStayWhole()
    {
        constexpr int lineCount = 3000;
        LogHelper log;
        QVERIFY(log.init(_path()));
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
        for (const QByteArray& line : _lines()) {
            const char digit = line.at(42);
            const int i = next[digit]++;
            QCOMPARE(line.mid(42), QByteArray(1 + i % 90, digit) + '|' + QByteArray::number(i));
        }
        QCOMPARE(next.values(), QList<int>(4, lineCount));
    }

    void fullDisk()
    {
        LogHelper log;
        QVERIFY(log.init(_path()));
        DiskFaults::failWritesAfter(5000, ENOSPC, "log.txt");
        // More than one block of the buffer, its first one half written.
        constexpr int count = 280;
        for (int i = 0; i < count; ++i) {
            log.err(u"%1 kept until there is room"_s.arg(i, 4));
            if (i == 100)
                log.flush();
        }
        QCOMPARE(contentsOf(_path()).size(), 5000);

        DiskFaults::reset();
        log.flush();
        QByteArrayList lines = _lines();
        QCOMPARE(lines.size(), count);
        for (int i = 0; i < count; ++i)
            QCOMPARE(lines.at(i).mid(42).trimmed(),
                     QByteArray::number(i) + " kept until there is room");

        // Full for long, it loses whole lines.
        DiskFaults::failWritesAfter(0, ENOSPC, "log.txt");
        for (int i = 0; i < 1000; ++i)
            log.err(QString(i % 100, u'x') + u" room"_s);
        DiskFaults::reset();
        log.err(u"there is room"_s);
        log.flush();
        for (const QByteArray& line : _lines())
            QVERIFY2(line.startsWith("Critical ") && line.endsWith(" room"), line.constData());
    }

private:
    [[nodiscard]] QString _path() const { return m_dir->filePath(u"log.txt"_s); }
    /// All lines; the last one's end is checked.
    [[nodiscard]] QByteArrayList _lines() const
    {
        QByteArrayList lines = contentsOf(_path()).split('\n');
        return lines.takeLast().isEmpty() ? lines : QByteArrayList{"cut line"};
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
