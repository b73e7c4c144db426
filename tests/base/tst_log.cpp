// The log: lines as they reach the file, from any thread and on a full disk.
#include "app/base/Clock.h"
#include "app/base/DebugTrace.h"
#include "app/base/LogHelper.h"
#include "app/base/LogStorage.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;
using logging::ESeverity;
using logging::LogHelper;

namespace {

constexpr int freeLine = __LINE__ + 3;
void logFromFunction(int count, const QString& text)
{
    MVR_LOG_WARN(QString::number(count) + text);
}

struct Caller
{
    static constexpr int line = __LINE__ + 1;
    void log() const { MVR_LOG_ERR(u"from a method"_s); }
};

} // namespace

Q_DECLARE_METATYPE(ESeverity)

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

    void line_data()
    {
        QTest::addColumn<ESeverity>("severity");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("ms");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("plain") << logging::critical << u"text"_s << 123
                               << "Critical        2024-02-03T04:05:06.123   text\n"_ba;
        QTest::newRow("5 ms") << logging::warning << u"text"_s << 5
                              << "Warning         2024-02-03T04:05:06.5     text\n"_ba;
        QTest::newRow("no ms") << logging::information << u"text"_s << 0
                               << "Information     2024-02-03T04:05:06.0     text\n"_ba;
        QTest::newRow("line feeds") << logging::debug << u"\na\n\nb\n"_s << 50
                                    << "Debug           2024-02-03T04:05:06.50    #a##b#\n"_ba;
        QTest::newRow("other severity") << ESeverity{4} << u"%1 %2 ж"_s << 9
                                        << "                2024-02-03T04:05:06.9     "
                                           "%1 %2 \xD0\xB6\n"_ba;
    }
    void line()
    {
        QFETCH(ESeverity, severity);
        QFETCH(QString, text);
        QFETCH(int, ms);
        LogHelper log;
        QVERIFY(log.init(_path()));
        log._write(QDateTime({2024, 2, 3}, QTime(4, 5, 6, ms)), severity, text);
        log.flush();
        QTEST(_read(), "line");
    }

    void severityFilter()
    {
        Clock::freeze(QDateTime({2024, 2, 3}, QTime(4, 5, 6, 7)));
        LogHelper log;
        QVERIFY(log.init(_path()));
        log.err(u"e"_s);
        log.warn(u"w"_s);
        log.info(u"i"_s);
        log.debug(u"d"_s);
        log.flush();
        QCOMPARE(_read(), "Critical        2024-02-03T04:05:06.7     e\n"
                          "Warning         2024-02-03T04:05:06.7     w\n"_ba);
    }

    void sourceLocation()
    {
        LogWatch watch;
        logFromFunction(2, u" tasks"_s);
        Caller().log();
        const QStringList lines = watch.takeRaw();
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines.first().mid(42),
                 u"void {anonymous}::logFromFunction(int, const QString&),"_s +
                     QString::number(freeLine) + u": 2 tasks"_s);
        QCOMPARE(lines.last().mid(42), u"void {anonymous}::Caller::log() const,"_s +
                                           QString::number(Caller::line) + u": from a method"_s);
    }

    void opening()
    {
        LogHelper log;
        log.err(u"lost"_s);
        log.flush();
        QVERIFY(!log.init(m_dir->filePath(u"none/log.txt"_s)));
        log.err(u"lost as well"_s);

        QVERIFY(log.init(_path()));
        log.err(u"one"_s);
        QVERIFY(log.init(_path()));
        log.err(u"two"_s);
        log.flush();
        const QByteArrayList lines = _read().split('\n');
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines.at(0).endsWith(" one"));
        QVERIFY(lines.at(1).endsWith(" two"));
    }

    void destructorFlushes()
    {
        {
            LogHelper log;
            QVERIFY(log.init(_path()));
            log.err(u"last words"_s);
            QCOMPARE(_read(), QByteArray());
        }
        QVERIFY(_read().endsWith(" last words\n"));
    }

    void linesOfThreadsStayWhole()
    {
        constexpr int threadCount = 4;
        constexpr int lineCount = 3000;
        LogHelper log;
        QVERIFY(log.init(_path()));
        std::vector<std::thread> threads;
        for (int t = 0; t < threadCount; ++t) {
            threads.emplace_back([&log, t] {
                for (int i = 0; i < lineCount; ++i)
                    log.err(QString(i % 90, QChar(u'a' + t)) + u'|' + QString::number(i));
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        log.flush();

        std::vector<int> next(threadCount, 0);
        QByteArrayList lines = _read().split('\n');
        QCOMPARE(lines.takeLast(), QByteArray());
        QCOMPARE(lines.size(), threadCount * lineCount);
        for (const QByteArray& line : std::as_const(lines)) {
            const QByteArrayList parts = line.mid(42).split('|');
            QCOMPARE(parts.size(), 2);
            const int i = parts.last().toInt();
            const int t = parts.first().isEmpty() ? -1 : parts.first().at(0) - 'a';
            QVERIFY(t < threadCount);
            QCOMPARE(parts.first(), QByteArray(i % 90, t < 0 ? ' ' : static_cast<char>('a' + t)));
            if (t >= 0)
                QCOMPARE_GE(i, std::exchange(next.at(static_cast<size_t>(t)), i));
        }
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
        QVERIFY(DiskFaults::failures() > 0);
        QCOMPARE(_read().size(), 5000);

        DiskFaults::reset();
        log.flush();
        QByteArrayList lines = _read().split('\n');
        QCOMPARE(lines.takeLast(), QByteArray());
        QCOMPARE(lines.size(), count);
        for (int i = 0; i < count; ++i) {
            QCOMPARE(lines.at(i).mid(42),
                     QByteArray::number(i).rightJustified(4) + " kept until there is room");
        }
    }
    void fullDiskForLong()
    {
        LogHelper log;
        QVERIFY(log.init(_path()));
        DiskFaults::failWritesAfter(0, ENOSPC, "log.txt");
        for (int i = 0; i < 1000; ++i)
            log.err(QString(i % 100, u'x') + u'|');
        DiskFaults::reset();
        log.err(u"there is room|"_s);
        log.flush();
        QByteArrayList lines = _read().split('\n');
        QCOMPARE(lines.takeLast(), QByteArray());
        for (const QByteArray& line : std::as_const(lines))
            QVERIFY2(line.startsWith("Critical ") && line.endsWith('|'), line.constData());
    }

    void storage()
    {
        logging::LogStorage storage;
        QVERIFY(!storage.isModified());
        for (int i = 0; i < 100001; ++i)
            storage.add({}, logging::warning, QString::number(i));
        QCOMPARE(storage.messages().size(), 100001);
        QCOMPARE(storage.messages().first().text, u"0"_s);
        QVERIFY(storage.isModified());
        QVERIFY(!storage.isModified());

        storage.add({}, logging::warning, u"last"_s);
        QVERIFY(storage.isModified());
        QCOMPARE(storage.messages().size(), 100001);
        QCOMPARE(storage.messages().first().text, u"1"_s);
        QCOMPARE(storage.messages().last().text, u"last"_s);
    }

    void trace()
    {
        const int standardError = ::dup(STDERR_FILENO);
        const int file =
            ::open(QFile::encodeName(_path()).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        ::dup2(file, STDERR_FILENO);
        debug::trace(u"traced ж"_s);
        ::dup2(standardError, STDERR_FILENO);
        ::close(standardError);
        ::close(file);
        QCOMPARE(_read(), "traced \xD0\xB6\n"_ba);
    }

private:
    [[nodiscard]] QString _path() const { return m_dir->filePath(u"log.txt"_s); }
    [[nodiscard]] QByteArray _read() const
    {
        QFile file(_path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
