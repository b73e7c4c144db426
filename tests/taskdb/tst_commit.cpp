// The commit thread: when it writes, what failures leave behind, and that no crash loses data.

#include "app/base/Clock.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageCommiter.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QDir>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <pthread.h>
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

using EPass = TaskStorageCommiter::EPass;

/// How many more threads this process may start, as far as it is asked to start any: -1 for any
/// number. A refusal counts as one and is the last.
std::atomic<int> threadsLeft = -1;

} // namespace

/// In place of the system's, which Qt calls.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*function)(void*), void* argument) noexcept
{
    if (int none = 0; threadsLeft.compare_exchange_strong(none, -1))
        return EAGAIN;
    static const auto real =
        reinterpret_cast<decltype(&pthread_create)>(::dlsym(RTLD_NEXT, "pthread_create"));
    return real(thread, attributes, function, argument);
}

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
            commiter._pass(EPass::routine);
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
        commiter._pass(EPass::last);
        QCOMPARE(tasksIn(builder.path()), 5);
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

    void failuresAreMadeUpFor_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("by");
        const QString open = u"Critical Fatal! Failed to open database for writing %1.new"_s;
        const QString write = u"Critical Fatal! Failed to write database to %1.new"_s;
        const QString swap = u"Critical Safe file update failed. Updating %1 from %1.new"_s;
        QTest::newRow("disk full, next pass") << u"write"_s << write << u"routine"_s;
        QTest::newRow("disk full, end") << u"write"_s << write << u"last"_s;
        QTest::newRow("sync, request") << u"fdatasync"_s << write << u"request"_s;
        QTest::newRow("write limit, on demand") << u"limit"_s << write << u"now"_s;
        QTest::newRow("swap, next pass") << u"rename"_s << swap << u"routine"_s;
        QTest::newRow("folder gone, end") << u"folder"_s << open << u"last"_s;
        QTest::newRow("not ours any more") << u"guard"_s << open.chopped(4) << u"last"_s;
    }
    /// Though nothing is changed after the failure.
    void failuresAreMadeUpFor()
    {
        QFETCH(const QString, fault);
        QFETCH(const QString, line);
        QFETCH(const QString, by);
        LogWatch log;
        StoreBuilder builder;
        bool isOurs = true;
        TaskStorageCommiter commiter(&builder.store, 60000, [&isOurs] { return isOurs; });
        (void)builder.task(TaskStorage::ms_inboxId, u"kept"_s);
        commiter.forcedCommit();
        const QByteArray before = contentOf(builder.path());
        (void)builder.task(TaskStorage::ms_inboxId, u"unsaved"_s);
        commiter._pass(EPass::routine);

        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        const rlimit low{10, old.rlim_max};
        const QString elsewhere = builder.folder() + u"-elsewhere"_s;
        isOurs = fault != u"guard";
        if (fault == u"limit")
            setrlimit(RLIMIT_FSIZE, &low);
        else if (fault == u"write")
            DiskFaults::failWritesAfter(20, ENOSPC, "database.xml");
        else if (fault == u"folder")
            QVERIFY(QDir().rename(builder.folder(), elsewhere));
        else if (isOurs)
            DiskFaults::failNext(qPrintable(fault), EIO, "database.xml.new");
        commiter._pass(EPass::routine);
        setrlimit(RLIMIT_FSIZE, &old);
        DiskFaults::reset();
        isOurs = true;
        QVERIFY(fault != u"folder" || QDir().rename(elsewhere, builder.folder()));
        QCOMPARE(contentOf(builder.path()), before);
        QCOMPARE(log.take(), QStringList{line.arg(builder.path())});

        if (by == u"request")
            builder.store.saveStateRequest();
        else if (by == u"now")
            builder.store.saveNow();
        else
            commiter._pass(by == u"last" ? EPass::last : EPass::routine);
        QTRY_COMPARE(tasksIn(builder.path()), 2);
    }

    /// Who is told of a failure, and when: not of one that the next pass makes up for.
    void failureIsToldOnceItLasts()
    {
        LogWatch log;
        StoreBuilder builder;
        QSignalSpy told(&builder.store, &TaskStorage::commitStateChanged);
        TaskStorageCommiter commiter(&builder.store, 60000);
        const auto errorTold = [&] {
            const auto failure =
                told.isEmpty() ? CommitFailure() : told.takeLast().first().value<CommitFailure>();
            told.clear();
            return failure.cause == CommitFailure::file ? failure.error : 0;
        };
        (void)builder.task(TaskStorage::ms_inboxId, u"x"_s);
        commiter._pass(EPass::routine);
        DiskFaults::failWritesAfter(0, ENOSPC, "database.xml");
        commiter._pass(EPass::routine);
        QCOMPARE(errorTold(), 0);
        for (int pass = 0; pass < 3; ++pass) {
            commiter._pass(EPass::routine);
            QCOMPARE(errorTold(), ENOSPC);
        }
        QCOMPARE(log.take().size(), 1);
        DiskFaults::failWritesAfter(0, EIO, "database.xml");
        commiter._pass(EPass::routine);
        QCOMPARE(errorTold(), EIO);
        QCOMPARE(log.take().size(), 1);
        commiter._pass(EPass::last);
        QCOMPARE(log.take(), QStringList{u"Critical The last changes could not be saved"_s});
        QCOMPARE(told.size(), 0);
        DiskFaults::reset();
        commiter.forcedCommit();
        QCOMPARE(told.size(), 1);
        QCOMPARE(commiter.failure().cause, CommitFailure::none);
        commiter._pass(EPass::routine);
        QCOMPARE(told.size(), 1);
    }

    void withoutAThread()
    {
        LogWatch log;
        QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"Thread creation error"_s));
        threadsLeft = 0;
        {
            TaskStorage store(path);
            QCOMPARE(store.init(), TaskStorage::NoError);
            QCOMPARE(log.take(),
                     QStringList{u"Critical Fatal! Failed to start the commit thread"_s});
            QCOMPARE(store.commitFailure().cause, CommitFailure::thread);
            (void)store.createTask(TaskStorage::ms_inboxId);
            // On demand the calling thread writes, and a full disk is told of at once.
            threadsLeft = 0;
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"Thread creation error"_s));
            DiskFaults::failWritesAfter(0, ENOSPC, "database.xml");
            store.saveNow();
            QCOMPARE(store.commitFailure().error, ENOSPC);
            QCOMPARE(log.take().size(), 1);
            DiskFaults::reset();
        }
        QCOMPARE(tasksIn(path), 1);
        // With a thread again by the next interval, all is as ever.
        TaskStorage store(path);
        store.setCommitInterval(1);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"Thread creation error"_s));
        threadsLeft = 0;
        QCOMPARE(store.init(), TaskStorage::NoError);
        QCOMPARE(log.take().size(), 1);
        (void)store.createTask(TaskStorage::ms_inboxId);
        QTRY_COMPARE(store.commitFailure().cause, CommitFailure::none);
        QTRY_COMPARE(tasksIn(path), 2);
    }

    void leftovers()
    {
        LogWatch log;
        StoreBuilder builder;
        builder.store.commitDataRequest(anyManager());
        const TodoTask::Id id = builder.task(TaskStorage::ms_inboxId, {});
        DiskFaults::failNext("rename", EACCES, ".new", 2);
        for (const QString& name : {u"first"_s, u"second"_s}) {
            builder.store.renameTask(id, name);
            builder.store.commitDataRequest(anyManager());
        }
        QCOMPARE(log.take().size(), 1);
        const QStringList files = filesIn(builder.folder());
        QCOMPARE(files.size(), 3);
        QVERIFY(contentOf(builder.folder() + u'/' + files.last()).contains("second"));
        builder.store.commitDataRequest(anyManager());
        QCOMPARE(filesIn(builder.folder()),
                 (QStringList{u"database.xml"_s, u"database.xml.bak"_s}));
    }

    void backupWithoutItsDatabaseIsSetAside()
    {
        LogWatch log;
        StoreBuilder builder;
        const QString name = u"database.xml.bak"_s;
        const QString dated = name + Clock::today().toString(u"-yyyy-MM-dd"_s);
        for (const QString& content : {u"older"_s, u"newer"_s}) {
            QFile::remove(builder.path());
            QFile::remove(builder.path() + u".bak"_s);
            QFile backup(builder.folder() + u'/' + name);
            QVERIFY(backup.open(QIODevice::WriteOnly) && backup.write(content.toLatin1()) > 0);
            backup.close();
            (void)builder.task(TaskStorage::ms_inboxId, content);
            DiskFaults::failNext("rename", EIO, ".bak");
            for (int i = 0; i < 3; ++i)
                builder.store.commitDataRequest(anyManager());
            QCOMPARE(log.take().size(), 1);
        }
        QCOMPARE(filesIn(builder.folder()),
                 (QStringList{u"database.xml"_s, name, dated, dated + u"_2"_s}));
        QCOMPARE(contentOf(builder.folder() + u'/' + dated), "older"_ba);
        QCOMPARE(contentOf(builder.folder() + u'/' + dated + u"_2"_s), "newer"_ba);
    }

    void linkedDatabaseStaysALink()
    {
        LogWatch log;
        const QTemporaryDir dir;
        QDir root(dir.path());
        QVERIFY(root.mkdir(u"data"_s) && root.mkdir(u"real"_s));
        const QString path = dir.filePath(u"data/database.xml"_s);
        QVERIFY(QFile::copy(QStringLiteral(MVR_SOURCE_DIR "/tests/data/sample.xml"),
                            dir.filePath(u"real/tasks.xml"_s)));
        QVERIFY(QFile::link(u"../real/tasks.xml"_s, path));
        const qsizetype before = tasksIn(path);
        {
            TaskStorage store(path);
            QCOMPARE(store.init(), TaskStorage::NoError);
            (void)store.createTask(TaskStorage::ms_inboxId);
        }
        QCOMPARE(tasksIn(path), before + 1);
        QVERIFY(QFileInfo(path).isSymLink());
        QCOMPARE(filesIn(dir.filePath(u"data"_s)), QStringList{u"database.xml"_s});
        QCOMPARE(filesIn(dir.filePath(u"real"_s)),
                 (QStringList{u"tasks.xml"_s, u"tasks.xml.bak"_s}));
        // A volume that is not mounted: neither empty nor written to.
        QVERIFY(root.rename(u"real"_s, u"gone"_s));
        QVERIFY(QFile::link(dir.filePath(u"nowhere"_s), dir.filePath(u"folder"_s)));
        for (const QString& name : {u"data"_s, u"folder"_s}) {
            TaskStorage store(dir.filePath(name + u"/database.xml"_s));
            QCOMPARE(store.init(), TaskStorage::ReadFailure);
            QCOMPARE(log.take(), QStringList{u"Critical Database failed to load"_s});
        }
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
};

QTEST_GUILESS_MAIN(CommitTest)
#include "tst_commit.moc"
