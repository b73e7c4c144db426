// Dated backups: what is kept, how they are made, and that they hold nothing back.

#include "app/base/Clock.h"
#include "taskdb/DatabaseBackups.h"
#include "taskdb/TaskStorageCommiter.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QDir>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

QString nameOf(const QDate& day)
{
    return u"database-"_s + day.toString(u"yyyy-MM-dd"_s) + u".xml"_s;
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
    [[nodiscard]] QStringList backups() const
    {
        return QDir(store.backupFolder())
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    }
    [[nodiscard]] QByteArray content(const QString& name) const
    {
        QFile file(store.backupFolder() + u'/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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
        QStringList names;
        for (QDate day = today.addYears(-3); day <= today; day = day.addDays(1)) {
            names += nameOf(day);
            for (const QString& name : DatabaseBackups::superfluous(names, day))
                names.removeAll(name);
        }
        QStringList expected;
        for (int i = 0; i < 7; ++i)
            expected += nameOf(today.addDays(-i));
        for (int i = 0; i < 5; ++i)
            expected += nameOf(QDate(2026, 11, 22).addDays(-7 * i));
        for (int i = 0; i < 12; ++i)
            expected += nameOf(QDate(2026, 11, 1).addMonths(-i));
        expected.removeDuplicates();
        expected.sort();
        QCOMPARE(names, expected);
    }

    void daysLeftOut()
    {
        const auto removedOf = [](const QString& stamps) {
            QStringList names{u"database-2026-02-30.xml"_s, u"database-2020-01-02.xml~"_s};
            for (const QString& stamp : stamps.split(u' '))
                names += u"database-2026-"_s + stamp + u".xml"_s;
            return DatabaseBackups::superfluous(names, QDate(2026, 11, 25)).join(u' ');
        };
        const QString week = u" 11-10 11-11 11-12 11-13 11-14 11-16 11-17"_s;
        // The last of its week and the first of its month stay, and what is dated after today.
        QCOMPARE(removedOf(u"10-06 10-07 10-08 12-24"_s + week), u"database-2026-10-07.xml"_s);
        QCOMPARE(removedOf(u"01-01-000001 01-01-000002 01-01-000003 01-02-120000 01-03-120000 "
                           "01-04-120000 01-05-120000 01-06-120000"_s +
                           week),
                 u"database-2026-01-01-000001.xml"_s);
    }

    void firstCommitOfADayKeepsTheVersionBefore()
    {
        LogWatch log;
        Committed store;
        store.commitOn(1);
        store.commiter.setBackups(false);
        store.commitOn(1);
        QVERIFY(!QFile::exists(store.store.backupFolder()));
        store.commiter.setBackups(true);
        store.commitOn(2);
        QVERIFY(store.content(day2).contains("of day 1") &&
                !store.content(day2).contains("of day 2"));
        const QByteArray first = store.content(day2);
        store.commitOn(2);
        QCOMPARE(store.content(day2), first);
        // The clock goes back.
        store.commitOn(1);
        QCOMPARE(store.backups(), (QStringList{day1, day2}));
        QVERIFY(store.content(day1).contains("of day 2"));
        QVERIFY(!(QFile::permissions(store.store.backupFolder()) & QFile::Permissions(0x0077)));
        QCOMPARE(log.take(), QStringList());
    }

    void withoutLinksTheThreadCopies()
    {
        LogWatch log;
        Committed store;
        store.commitOn(1);
        DiskFaults::failNext("link", EPERM, "backups", DiskFaults::always);
        store.commitOn(2);
        QCOMPARE(store.backups(), QStringList());
        // Meanwhile there is another version before.
        store.commitOn(2);
        store.commiter._pass(TaskStorageCommiter::EPass::routine);
        QCOMPARE(store.backups(), QStringList{day2});
        QVERIFY(store.content(day2).contains("of day 1") &&
                !store.content(day2).contains("of day 2"));
        QVERIFY(store.content(day2).endsWith("</taskdb>\n"));
        QCOMPARE(log.take(), QStringList());
    }

    void whatCannotBeMadeHoldsNothingBack()
    {
        LogWatch log;
        Committed store;
        QFile inTheWay(store.store.backupFolder());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        for (const int day : {1, 2, 2, 3})
            store.commitOn(day);
        QCOMPARE(store.commiter.lastSaved(), store.store.modification());
        const QStringList lines = log.take();
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.first().startsWith("Warning Failed to make the backup "_L1));
        QVERIFY(inTheWay.remove());
    }

    void lossOfMostTasksIsKeptApart()
    {
        for (const int tasks : {10, 60}) {
            Committed store(tasks);
            for (int i = 0; i < 3; ++i)
                store.commitOn(1);
            store.store.emptyTrash();
            store.commitOn(1);
            const QString extra = u"database-2026-11-01-120507.xml"_s;
            QCOMPARE(store.backups(), tasks == 60 ? QStringList({extra, day1}) : QStringList{day1});
            QCOMPARE(store.content(extra).count("<tid>"), tasks == 60 ? 63 : 0);
        }
    }
};

QTEST_GUILESS_MAIN(BackupsTest)
#include "tst_backups.moc"
