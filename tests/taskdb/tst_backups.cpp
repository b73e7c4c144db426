// Dated backups: what is kept, how they are made, and that they hold nothing back.

#include "app/base/Clock.h"
#include "taskdb/DatabaseBackups.h"
#include "taskdb/TaskStorageCommiter.h"
#include "tests/base/Files.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QDir>

#include <cerrno>

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
};

QTEST_GUILESS_MAIN(BackupsTest)
#include "tst_backups.moc"
