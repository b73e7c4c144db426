// The commit thread: when it writes, what failures leave behind, and that no crash loses data.

#include "app/base/CSafeFileUpdate.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageCommiter.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The number of tasks in a group of a database file, or -1 when it does not load.
qsizetype tasksIn(const QString& path, const FocusGroup::Id& group = TaskStorage::ms_inboxId)
{
    TaskStorage store(path);
    if (!QFile::exists(path) || store.init() != TaskStorage::NoError)
        return -1;
    QList<TodoTask::Id> ids;
    store.enumGroup(group, ids);
    return ids.size();
}

// A session end comes with a manager that the store does not look at.
QSessionManager& anyManager()
{
    alignas(QObject) static char place[64];
    return reinterpret_cast<QSessionManager&>(place);
}

QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files, QDir::Name);
}

} // namespace

class CommitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { std::signal(SIGXFSZ, SIG_IGN); }
    void cleanup() { DiskFaults::reset(); }

    void untouchedStoreIsNeverWritten()
    {
        const LogWatch log;
        QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        {
            TaskStorage store(path);
            store.setCommitInterval(1);
            QCOMPARE(store.init(), TaskStorage::NoError);
            store.saveStateRequest();
        }
        QVERIFY(filesIn(dir.path()).isEmpty());
    }

    void onlyAQuietStoreIsWrittenAndOnlyOnce()
    {
        const LogWatch log;
        StoreBuilder builder;
        TaskStorageCommiter commiter(&builder.store, 60000);
        const auto writes = [&] {
            QFile::remove(builder.path());
            commiter._pass(false);
            return QFile::exists(builder.path());
        };
        QVERIFY(!writes());
        for (int change = 0; change < 3; ++change) {
            (void)builder.task(TaskStorage::ms_inboxId, QString::number(change));
            QVERIFY(!writes());
        }
        QVERIFY(writes());
        QCOMPARE(tasksIn(builder.path()), 3);
        QVERIFY(!writes());
        // A forced commit does not count: the thread may write the same once more.
        (void)builder.task(TaskStorage::ms_inboxId, u"forced"_s);
        commiter.forcedCommit();
        QVERIFY(!writes());
        QVERIFY(writes());
        (void)builder.task(TaskStorage::ms_inboxId, u"last"_s);
        commiter._pass(true);
        QCOMPARE(tasksIn(builder.path()), 5);
    }

    void theThreadWritesByItself()
    {
        const LogWatch log;
        StoreBuilder builder({}, 20);
        (void)builder.task(TaskStorage::ms_inboxId, u"first"_s);
        QTRY_VERIFY(contentOf(builder.path()).contains("first"));
        (void)builder.task(TaskStorage::ms_inboxId, u"second"_s);
        QTRY_VERIFY(contentOf(builder.path()).contains("second"));
        QVERIFY(!contentOf(builder.path() + u".bak"_s).contains("second"));
    }

    void endingWritesAtOnce()
    {
        const LogWatch log;
        QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        // Many times: the thread may not even run yet when it is told to end.
        for (int round = 1; round <= 50; ++round) {
            {
                TaskStorage store(path);
                QCOMPARE(store.init(), TaskStorage::NoError);
                (void)store.createTask(TaskStorage::ms_inboxId);
            }
            QCOMPARE(tasksIn(path), round);
        }
    }

    void endingDuringACommitLosesNothing()
    {
        const LogWatch log;
        QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        QRandomGenerator random(11);
        for (int round = 1; round <= 40; ++round) {
            {
                TaskStorage store(path);
                store.setCommitInterval(1);
                QCOMPARE(store.init(), TaskStorage::NoError);
                const TodoTask::Id id = store.createTask(TaskStorage::ms_inboxId);
                store.attachNotesToTask(id, QString(100000, u'n'));
                QThread::usleep(random.bounded(6000));
                (void)store.createTask(TaskStorage::ms_completedId);
            }
            QCOMPARE(tasksIn(path), round);
            QCOMPARE(tasksIn(path, TaskStorage::ms_completedId), round);
        }
    }

    void sessionEndWritesAtOnceAndAlways()
    {
        const LogWatch log;
        StoreBuilder builder;
        builder.store.commitDataRequest(anyManager());
        QCOMPARE(tasksIn(builder.path()), 0);
        (void)builder.task(TaskStorage::ms_inboxId, u"x"_s);
        builder.store.saveStateRequest();
        QCOMPARE(tasksIn(builder.path()), 1);
    }

    void failuresLeaveTheOldFile_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("temporaryStays");
        const QString write = u"Critical Fatal! Failed to write database to %1.new"_s;
        QTest::newRow("disk full at once") << u"full 0"_s << write << false;
        QTest::newRow("disk full in the middle") << u"full 20000"_s << write << false;
        QTest::newRow("I/O error") << u"error 20000"_s << write << false;
        QTest::newRow("write limit") << u"limit"_s << write << false;
        QTest::newRow("sync") << u"fdatasync"_s << write << false;
        QTest::newRow("rename") << u"rename"_s
                                << u"Critical Safe file update failed. Updating %1 from %1.new"_s
                                << true;
    }

    void failuresLeaveTheOldFile()
    {
        QFETCH(QString, fault);
        QFETCH(QString, line);
        QFETCH(bool, temporaryStays);
        LogWatch log;
        StoreBuilder builder;
        const TodoTask::Id id = builder.task(TaskStorage::ms_inboxId, u"kept"_s);
        builder.store.commitDataRequest(anyManager());
        const QByteArray before = contentOf(builder.path());
        builder.store.attachNotesToTask(id, QString(500000, u'n'));

        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        const QString call = fault.section(u' ', 0, 0);
        const qint64 bytes = fault.section(u' ', 1).toLongLong();
        if (call == u"full")
            DiskFaults::failWritesAfter(bytes, ENOSPC, "database.xml");
        else if (call == u"error")
            DiskFaults::failWritesAfter(bytes, EIO, "database.xml");
        else if (call == u"limit")
            setrlimit(RLIMIT_FSIZE, std::make_unique<rlimit>(rlimit{100000, old.rlim_max}).get());
        else
            DiskFaults::failNext(qPrintable(call), EIO, "database.xml");
        builder.store.commitDataRequest(anyManager());
        setrlimit(RLIMIT_FSIZE, &old);
        DiskFaults::reset();

        QCOMPARE(contentOf(builder.path()), before);
        QCOMPARE(log.take(), QStringList{line.arg(builder.path())});
        QCOMPARE(filesIn(builder.folder()).contains(u"database.xml.new"_s), temporaryStays);
        // With the trouble over, everything is written.
        builder.store.commitDataRequest(anyManager());
        QCOMPARE(contentOf(builder.path()).count('n') > 500000, true);
        QCOMPARE(log.take(), QStringList());
    }

    void folderThatIsGone()
    {
        LogWatch log;
        QTemporaryDir dir;
        QDir(dir.path()).mkdir(u"data"_s);
        const QString path = dir.filePath(u"data/database.xml"_s);
        TaskStorage store(path);
        QCOMPARE(store.init(), TaskStorage::NoError);
        QDir(dir.path()).rmdir(u"data"_s);
        store.commitDataRequest(anyManager());
        QCOMPARE(log.take(), QStringList{u"Critical Fatal! Failed to open database for writing "_s +
                                         path + u".new"_s});
    }

    void failedCommitIsTriedAgainAfterTheNextChange()
    {
        LogWatch log;
        StoreBuilder builder({}, 10);
        DiskFaults::failWritesAfter(0, ENOSPC, "database.xml");
        (void)builder.task(TaskStorage::ms_inboxId, u"first"_s);
        QTRY_COMPARE(DiskFaults::failures(), 1);
        DiskFaults::reset();
        (void)builder.task(TaskStorage::ms_inboxId, u"second"_s);
        QTRY_VERIFY(contentOf(builder.path()).contains("second"));
        QVERIFY(contentOf(builder.path()).contains("first"));
        QCOMPARE(log.take(), QStringList{u"Critical Fatal! Failed to write database to "_s +
                                         builder.path() + u".new"_s});
    }

    void forcedAndBackgroundCommitsKeepTheirOrder()
    {
        const LogWatch log;
        QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        {
            TaskStorage store(path);
            store.setCommitInterval(1);
            QCOMPARE(store.init(), TaskStorage::NoError);
            qsizetype written = 0;
            for (int round = 0; round < 200; ++round) {
                (void)store.createTask(TaskStorage::ms_inboxId);
                if (round % 3 == 0)
                    QThread::usleep(1500);
                store.commitDataRequest(anyManager());
                const qsizetype now = tasksIn(path);
                QVERIFY2(now > written, "an older state landed last");
                written = now;
            }
        }
        QCOMPARE(filesIn(dir.path()), (QStringList{u"database.xml"_s, u"database.xml.bak"_s}));
    }

    /// One task moves to and fro between the first and the last of many groups: a copy that is not
    /// of one moment shows it in none of them or in both.
    void snapshotsRaceWithOperations()
    {
        const LogWatch log;
        StoreBuilder builder({}, 1);
        const FocusGroup::Id first = builder.store.createGroup(u"First"_s, {});
        for (int i = 0; i < 500; ++i)
            (void)builder.store.createGroup(QString::number(i), {});
        const FocusGroup::Id last = builder.store.createGroup(u"Last"_s, {});
        const TodoTask::Id id = builder.task(first, u"Rover"_s);

        std::atomic<bool> done = false;
        std::atomic<int> torn = 0;
        std::atomic<int> taken = 0;
        const std::unique_ptr<QThread> reader(QThread::create([&] {
            TaskStorageSnapsot snapshot;
            while (!done) {
                builder.store.takeSnapshot(snapshot);
                int holders = 0;
                for (const FocusGroup& group : snapshot.groups())
                    holders += group.contains(id) ? 1 : 0;
                torn += holders == 1 ? 0 : 1;
                ++taken;
            }
        }));
        reader->start();
        while (taken < 2000) {
            builder.store.moveTasks(first, last, {id});
            builder.store.moveTasks(last, first, {id});
        }
        done = true;
        QVERIFY(reader->wait(30000));
        QCOMPARE(torn.load(), 0);
    }

    void secondInitStartsAnew()
    {
        const LogWatch log;
        StoreBuilder builder;
        (void)builder.store.createGroup(u"Home"_s, {});
        (void)builder.task(TaskStorage::ms_inboxId, u"kept"_s);
        QCOMPARE(builder.store.init(), TaskStorage::NoError);
        QList<FocusGroup::Id> groups;
        builder.store.enumGroups(groups);
        QCOMPARE(groups.size(), 4);
        QCOMPARE(builder.members(TaskStorage::ms_inboxId).size(), 1);
    }

    void killedAtAnyMomentNothingCommittedIsLost()
    {
        const LogWatch log;
        QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        QRandomGenerator random(7);
        qsizetype known = 0;
        for (int round = 0; round < 200; ++round) {
            QProcess victim;
            victim.start(QStringLiteral(MVR_COMMITLOOP), {path});
            QVERIFY(victim.waitForReadyRead());
            QThread::usleep(random.bounded(8000));
            victim.kill();
            QVERIFY(victim.waitForFinished());
            const QList<QByteArray> counts = victim.readAllStandardOutput().split('\n');
            // The last line may be cut off, so the one before it counts.
            known = qMax(known, counts.size() > 1 ? counts.at(counts.size() - 2).toLongLong() : 0);
            const qsizetype found = tasksIn(path);
            QVERIFY2(found >= known, qPrintable(u"%1 of %2 tasks"_s.arg(found).arg(known)));
            if (found > 300)
                QVERIFY(QFile::remove(path));
            known = found > 300 ? 0 : found;
        }
    }
};

QTEST_GUILESS_MAIN(CommitTest)
#include "tst_commit.moc"
