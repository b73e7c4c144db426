// Dated backups: what is kept, how they are made, that they hold nothing back, and what is found
// in them.

#include "app/base/CSafeFileUpdate.h"
#include "app/base/Clock.h"
#include "taskdb/BackupReader.h"
#include "taskdb/DatabaseBackups.h"
#include "taskdb/TaskStorageCommiter.h"
#include "tests/base/Files.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QDir>
#include <QPointer>
#include <QSignalSpy>

#include <cerrno>
#include <dlfcn.h>
#include <pthread.h>

namespace {
bool hasThreads = true;
}

/// In place of the system's, which the C++ library calls.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*work)(void*), void* argument) noexcept
{
    static const auto original =
        reinterpret_cast<decltype(&pthread_create)>(::dlsym(RTLD_NEXT, "pthread_create"));
    return hasThreads ? original(thread, attributes, work, argument) : EAGAIN;
}

using namespace Qt::StringLiterals;

namespace {

QString nameOf(const QDate& day)
{
    return day.toString(u"'database-'yyyy-MM-dd'.xml'"_s);
}

/// A store of so many tasks that commits when it is told to.
class Committed : public StoreBuilder
{
public:
    explicit Committed(int tasks = 1)
    {
        for (int i = 0; i < tasks; ++i)
            (void)task(TaskStorage::ms_trashId, QString::number(i));
    }
    /// Commits on that day of November, when the clock has been set to it.
    void commitOn(int day)
    {
        Clock::freeze(QDateTime(QDate(2026, 11, day), QTime(12, 5, 7)));
        (void)task(TaskStorage::ms_inboxId, u"of day %1"_s.arg(day));
        commiter.forcedCommit();
    }
    /// The backup's last task, or nothing.
    [[nodiscard]] QByteArray newestIn(const QString& name) const
    {
        const QByteArray content = contentsOf(store.backupFolder() + u'/' + name);
        return content.mid(content.lastIndexOf("of day"), 8);
    }

    TaskStorageCommiter commiter{&store, 60000};
};

const auto day1 = u"database-2026-11-01.xml"_s;
const auto day2 = u"database-2026-11-02.xml"_s;

} // namespace

class BackupsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        hasThreads = true;
        DiskFaults::reset();
        Clock::release();
    }

    /// Every day for three years, thinned out each time.
    void ofEveryDayAYearIsKept()
    {
        const QDate today(2026, 11, 25); // a Wednesday
        QStringList names{u"database-2026-02-30.xml"_s, u"database-2027-01-01.xml"_s};
        const QStringList foreign = names;
        for (QDate day = today.addYears(-3); day <= today; day = day.addDays(1)) {
            names += nameOf(day);
            for (const QString& name : DatabaseBackups::superfluous(names, day))
                names.removeAll(name);
        }
        QStringList expected = foreign;
        for (int i = 0; i < 7; ++i)
            expected += nameOf(today.addDays(-i));
        for (int i = 0; i < 5; ++i)
            expected += nameOf(QDate(2026, 11, 22).addDays(-7 * i));
        for (int i = 0; i < 12; ++i)
            expected += nameOf(QDate(2026, 11, 1).addMonths(-i));
        expected.removeDuplicates();
        expected.sort();
        names.sort();
        QCOMPARE(names, expected);
    }

    void firstCommitOfADayKeepsTheVersionBefore()
    {
        const LogWatch log;
        // By a link, and by the thread's copy.
        for (const bool links : {true, false}) {
            Committed store;
            const QString folder = store.store.backupFolder() + u'/';
            if (!links)
                DiskFaults::failNext("link", EPERM, "backups", DiskFaults::always);
            store.commitOn(1);
            store.commiter.setBackups(false);
            store.commitOn(1);
            QVERIFY(!QFile::exists(folder));
            store.commiter.setBackups(true);
            // By the second of them there is another version before. On the last the clock goes
            // back.
            for (const int day : {2, 2, 1})
                store.commitOn(day);
            QCOMPARE(QFile::exists(folder + day2), links);
            store.commiter._pass(TaskStorageCommiter::EPass::routine);
            QCOMPARE(QDir(folder).entryList(QDir::Files), (QStringList{day1, day2}));
            QCOMPARE(store.newestIn(day2), "of day 1"_ba);
            QCOMPARE(store.newestIn(day1), "of day 2"_ba);
            QVERIFY(!(QFile::permissions(folder) & QFile::Permissions(0x0077)));
            for (int day = 3; day < 10; ++day) {
                store.commitOn(day);
                store.commiter._pass(TaskStorageCommiter::EPass::routine);
            }
            QVERIFY2(!QFile::exists(folder + day2), "it is superfluous by now");
        }
    }

    void whatCannotBeMadeHoldsNothingBack()
    {
        LogWatch log;
        Committed store;
        writeFile(store.store.backupFolder(), "in the way");
        for (const int day : {1, 2, 2, 3})
            store.commitOn(day);
        QCOMPARE(store.commiter.lastSaved(), store.store.modification());
        const QStringList lines = log.take();
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.first().startsWith("Warning Failed to make the backup "_L1));
        QVERIFY(QFile::remove(store.store.backupFolder()));
    }

    void lossOfMostTasksIsKeptApart()
    {
        Committed store(60);
        for (int i = 0; i < 3; ++i)
            store.commitOn(1);
        const QString extra = store.store.backupFolder() + u"/database-2026-11-01-120507.xml"_s;
        QVERIFY(!QFile::exists(extra));
        store.store.emptyTrash();
        store.commitOn(1);
        QCOMPARE(contentsOf(extra).count("<tid>"), 63);
    }

    void everyVersionIsReadAndLeftAsItIs()
    {
        LogWatch log;
        StoreBuilder present;
        TaskStorage& store = present.store;
        const FocusGroup::Id home = store.createGroup(u"Home"_s, {});
        const TodoTask::Id gone = present.task(home, u"in two groups, then gone"_s);
        store.addTask(TaskStorage::ms_inboxId, gone);
        const TodoTask::Id trashed = present.task(home, u"in the Trash by now"_s);
        (void)present.task(TaskStorage::ms_trashId, u"not worth a count"_s);
        const QDir folder(store.backupFolder());
        QVERIFY(folder.mkpath(u"database-2026-11-03.xml"_s));
        for (const QString& name :
             {day1, day2, u"database-2026-11-02-120507.xml"_s, u"database-2026-02-30.xml"_s,
              u"database-2026-11-02-990000.xml"_s})
            QCOMPARE(store.saveCopy(folder.filePath(name)).state, ESafeWrite::done);
        writeFile(folder.filePath(day1), "<taskdb version=\"2\"/>");
        writeFile(folder.filePath(u"database-2026-10-31.xml"_s), "<taskdb version=\"1\">");
        QFile::copy(QFINDTESTDATA("../data/orphans.xml"),
                    folder.filePath(u"database-2026-10-30.xml"_s));
        QFile::copy(folder.filePath(day2), present.path() + u".bak"_s);
        store.emptyTrash();
        store.removeTask(home, gone, true);
        store.removeTask(TaskStorage::ms_inboxId, gone, true);
        store.removeTask(home, trashed, false);

        for (const bool threads : {true, false}) {
            hasThreads = threads;
            QStringList found;
            BackupReader reader(store);
            connect(&reader, &BackupReader::versionRead, this, [&](const BackupVersion& version) {
                const QString format = version.hasTime ? u"dd. HH:mm:ss"_s : u"dd."_s;
                found += u"%1 error %2, %3 %4 %5"_s
                             .arg(version.isLast ? u"last"_s : version.date.toString(format))
                             .arg(version.error)
                             .arg(version.tasks)
                             .arg(version.groups)
                             .arg(version.missing);
            });
            QSignalSpy end(&reader, &BackupReader::allRead);
            reader.readAll();
            QTRY_COMPARE(end.size(), 1);
            QCOMPARE(found, (QStringList{u"last error 0, 2 1 1"_s, u"02. 12:05:07 error 0, 2 1 1"_s,
                                         u"02. error 0, 2 1 1"_s, u"01. error 1, 0 0 0"_s,
                                         u"31. error 3, 0 0 0"_s, u"30. error 0, 0 1 0"_s}));
            QCOMPARE(log.take().size(), 3);
            QCOMPARE(QDir(present.folder()).entryList(QDir::Files),
                     (QStringList{u"database.xml.bak"_s}));

            QSignalSpy loaded(&reader, &BackupReader::loaded);
            reader.load({.path = folder.filePath(day2)});
            QTRY_COMPARE(loaded.size(), 1);
            QCOMPARE(loaded.first().first().value<BackupContent>().missing, QList{gone});

            const QPointer<BackupReader> retired = new BackupReader(store);
            retired->readAll();
            retired->retire();
            QTRY_VERIFY2(!retired, "nobody owns it any more");
            (void)log.take();
        }
    }
};

QTEST_GUILESS_MAIN(BackupsTest)
#include "tst_backups.moc"
