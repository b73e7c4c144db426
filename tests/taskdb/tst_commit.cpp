// The commit thread: when it writes, what failures leave behind, and in which order commits come.

#include "app/base/Clock.h"
#include "taskdb/TaskStorageCommiter.h"
#include "tests/base/Files.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QDir>
#include <QSignalSpy>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <dlfcn.h>
#include <thread>

using namespace Qt::StringLiterals;
using EPass = TaskStorageCommiter::EPass;

namespace {

/// The number of tasks in the Inbox of a database file, or -1 when it does not load.
qsizetype tasksIn(const QString& path)
{
    TaskStorage store(path);
    const bool isLoaded = QFile::exists(path) && store.init() == TaskStorage::NoError;
    return isLoaded ? store.getGroup(TaskStorage::ms_inboxId).tasks().size() : -1;
}

std::atomic_bool refusesThread = false;

QString filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files, QDir::Name).join(u' ');
}

} // namespace

/// In place of the system's, which Qt calls.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*function)(void*), void* argument) noexcept
{
    if (refusesThread.exchange(false))
        return EAGAIN;
    static const auto real =
        reinterpret_cast<decltype(&pthread_create)>(::dlsym(RTLD_NEXT, "pthread_create"));
    return real(thread, attributes, function, argument);
}

class CommitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { DiskFaults::reset(); }

    /// The end writes without one; before that, one is started at the next interval.
    void withoutAThread()
    {
        LogWatch log;
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        for (const int interval : {60000, 1}) {
            TaskStorage store(path);
            store.setCommitInterval(interval);
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"Thread creation error"_s));
            refusesThread = true;
            QCOMPARE(store.init(), TaskStorage::NoError);
            QCOMPARE(log.take().size(), 1);
            QCOMPARE(store.commitFailure().cause, CommitFailure::thread);
            (void)store.createTask(TaskStorage::ms_inboxId);
            if (interval == 1)
                QTRY_COMPARE(tasksIn(path), 2);
        }
        QCOMPARE(tasksIn(path), 2);
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
    }

    void endingWritesAtOnce()
    {
        const LogWatch log;
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        // Many times: the thread may not even run yet when it is told to end.
        for (int round = 0; round < 50; ++round) {
            TaskStorage store(path);
            QCOMPARE(store.init(), TaskStorage::NoError);
            if (round > 0)
                (void)store.createTask(TaskStorage::ms_inboxId);
            else
                store.saveStateRequest();
            QCOMPARE(tasksIn(path), round > 1 ? round - 1 : -1);
        }
        QCOMPARE(tasksIn(path), 49);
    }

    void failuresAreMadeUpFor_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("atTheEnd");
        const QString open = u"Critical Fatal! Failed to open database for writing %1"_s;
        const QString write = u"Critical Fatal! Failed to write database to %1.new"_s;
        const QString swap = u"Critical Safe file update failed. Updating %1 from %1.new"_s;
        QTest::newRow("write") << write << false;
        QTest::newRow("fdatasync") << write << true;
        QTest::newRow("rename") << swap << false;
        QTest::newRow("not ours any more") << open << true;
    }
    /// Though nothing is changed after the failure.
    void failuresAreMadeUpFor()
    {
        QFETCH(const QString, line);
        QFETCH(const bool, atTheEnd);
        const QByteArray fault = QTest::currentDataTag();
        LogWatch log;
        StoreBuilder builder;
        bool isOurs = true;
        TaskStorageCommiter commiter(&builder.store, 60000, [&isOurs] { return isOurs; });
        (void)builder.task(TaskStorage::ms_inboxId, u"kept"_s);
        commiter.forcedCommit();
        const QByteArray before = contentsOf(builder.path());
        (void)builder.task(TaskStorage::ms_inboxId, u"unsaved"_s);
        commiter._pass(EPass::routine);

        isOurs = fault != "not ours any more";
        if (isOurs)
            DiskFaults::failNext(fault.constData(), EIO, "database.xml.new");
        commiter._pass(EPass::routine);
        isOurs = true;
        QCOMPARE(contentsOf(builder.path()), before);
        QCOMPARE(log.take(), QStringList{line.arg(builder.path())});

        commiter._pass(atTheEnd ? EPass::last : EPass::routine);
        QCOMPARE(tasksIn(builder.path()), 2);
    }

    /// Who is told of a failure, and when: not of one that the next pass makes up for.
    void failureIsToldOnceItLasts()
    {
        LogWatch log;
        StoreBuilder builder;
        QSignalSpy told(&builder.store, &TaskStorage::commitStateChanged);
        TaskStorageCommiter commiter(&builder.store, 60000);
        const auto errorsTold = [&](EPass pass) {
            told.clear();
            commiter._pass(pass);
            QList<int> errors;
            for (const QVariantList& arguments : told)
                errors += arguments.first().value<CommitFailure>().error;
            return errors;
        };
        (void)builder.task(TaskStorage::ms_inboxId, u"x"_s);
        commiter._pass(EPass::routine);
        for (const int error : {ENOSPC, EIO}) {
            DiskFaults::failWritesAfter(0, error, "database.xml");
            QCOMPARE(errorsTold(EPass::routine), error == EIO ? QList{EIO} : QList<int>());
            QCOMPARE(errorsTold(EPass::routine), QList{error});
            QCOMPARE(log.take().size(), 1);
        }
        QCOMPARE(errorsTold(EPass::last), QList<int>());
        QCOMPARE(log.take(), QStringList{u"Critical The last changes could not be saved"_s});
        DiskFaults::reset();
        QCOMPARE(errorsTold(EPass::routine), QList{0});
        QCOMPARE(commiter.failure().cause, CommitFailure::none);
        QCOMPARE(errorsTold(EPass::routine), QList<int>());
    }

    void backupWithoutItsDatabaseIsSetAside()
    {
        LogWatch log;
        StoreBuilder builder;
        const QString backup = builder.path() + u".bak"_s;
        const QString dated = backup + Clock::today().toString(u"-yyyy-MM-dd"_s);
        writeFile(dated, "earlier");
        writeFile(backup, "lone");
        (void)builder.task(TaskStorage::ms_inboxId, {});
        DiskFaults::failNext("rename", EIO, ".bak");
        for (int i = 0; i < 2; ++i)
            builder.store.saveStateRequest();
        QCOMPARE(log.take().size(), 1);
        QCOMPARE(contentsOf(dated + u"_2"_s), "lone"_ba);
        QVERIFY(!QFile::exists(backup));
    }

    void linkedDatabaseStaysALink()
    {
        const LogWatch log;
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        QVERIFY(QDir(dir.path()).mkdir(u"real"_s) && QFile::link(u"real/tasks.xml"_s, path));
        writeFile(dir.filePath(u"real/tasks.xml"_s), "<taskdb version='1'/>");
        {
            TaskStorage store(path);
            QCOMPARE(store.init(), TaskStorage::NoError);
            (void)store.createTask(TaskStorage::ms_inboxId);
        }
        QVERIFY(QFileInfo(path).isSymLink());
        QCOMPARE(filesIn(dir.path()), u"database.xml"_s);
        QCOMPARE(filesIn(dir.filePath(u"real"_s)), u"tasks.xml tasks.xml.bak"_s);
        QCOMPARE(tasksIn(path), 1);
    }

    void forcedAndBackgroundCommitsKeepTheirOrder()
    {
        const LogWatch log;
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"database.xml"_s);
        {
            TaskStorage store(path);
            store.setCommitInterval(1);
            QCOMPARE(store.init(), TaskStorage::NoError);
            for (int round = 1; round <= 200; ++round) {
                (void)store.createTask(TaskStorage::ms_inboxId);
                QThread::usleep(500);
                store.saveStateRequest();
                QVERIFY2(tasksIn(path) == round, "an older state landed last");
            }
        }
        QCOMPARE(filesIn(dir.path()), u"database.xml database.xml.bak"_s);
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

        std::atomic<int> torn = 0;
        std::atomic<int> taken = 0;
        const std::jthread reader([&](const std::stop_token& end) {
            TaskStorageSnapsot snapshot;
            for (; !end.stop_requested(); ++taken) {
                builder.store.takeSnapshot(snapshot);
                int holders = 0;
                for (const FocusGroup& group : snapshot.groups())
                    holders += group.contains(id) ? 1 : 0;
                torn += holders == 1 ? 0 : 1;
            }
        });
        while (taken < 2000) {
            builder.store.moveTasks(first, last, {id});
            builder.store.moveTasks(last, first, {id});
        }
        QCOMPARE(torn.load(), 0);
    }
};

QTEST_GUILESS_MAIN(CommitTest)
#include "tst_commit.moc"
