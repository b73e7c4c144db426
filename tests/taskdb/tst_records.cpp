// Task and group records by themselves.

#include "app/base/Clock.h"
#include "taskdb/FocusGroup.h"
#include "taskdb/SharedStorage.h"
#include "taskdb/TaskStorage.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString someId = u"{0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0}"_s;

TodoTask loaded(const QString& completed, const QString& due, const QString& created)
{
    TodoTask task;
    task.load(someId, u"Name"_s, {}, completed, due, created, {}, {});
    return task;
}

} // namespace

class RecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Clock::freeze(QDateTime(QDate(2026, 3, 15), QTime(10, 30))); }
    void cleanup() { Clock::release(); }

    void loadsTimes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("time");
        const QDateTime none;
        QTest::newRow("empty") << QString() << none;
        QTest::newRow("no number") << u"tomorrow"_s << none;
        QTest::newRow("fraction") << u"12.5"_s << none;
        QTest::newRow("too large") << u"99999999999999999999"_s << none;
        QTest::newRow("no such date") << u"9223372036854775807"_s << none;
        QTest::newRow("zero") << u"0"_s << QDateTime::fromMSecsSinceEpoch(0);
        QTest::newRow("negative") << u"-1000"_s
                                  << QDateTime(QDate(1969, 12, 31), QTime(23, 59, 59), Qt::UTC);
        QTest::newRow("usual") << u"1356998400000"_s
                               << QDateTime(QDate(2013, 1, 1), QTime(0, 0), Qt::UTC);
    }

    void loadsTimes()
    {
        QFETCH(QString, text);
        QFETCH(QDateTime, time);
        const TodoTask task = loaded({}, text, text);
        QCOMPARE(task.timeDue().isValid(), time.isValid());
        QCOMPARE(task.timeDue(), time);
        QCOMPARE(task.timeCreated(), time.isValid() ? time : Clock::now());
    }

    void countsDaysByTheCalendar_data()
    {
        QTest::addColumn<QDateTime>("due");
        QTest::addColumn<int>("days");
        QTest::newRow("none") << QDateTime() << 2147483647;
        QTest::newRow("earlier today") << QDateTime(QDate(2026, 3, 15), QTime(0, 0)) << 0;
        QTest::newRow("in 14 hours") << QDateTime(QDate(2026, 3, 16), QTime(0, 1)) << 1;
        QTest::newRow("11 hours ago") << QDateTime(QDate(2026, 3, 14), QTime(23, 59)) << -1;
        // The clocks change on the 29th: a day of 23 hours is a day.
        QTest::newRow("beyond all counting")
            << QDateTime::fromMSecsSinceEpoch(Q_INT64_C(999'999'999'999'999'999)) << 2147483646;
        QTest::newRow("over a clock change") << QDateTime(QDate(2026, 3, 30), QTime(0, 0)) << 15;
    }

    void countsDaysByTheCalendar()
    {
        QFETCH(QDateTime, due);
        TodoTask task;
        task.create();
        task.setTimeDue(due);
        QTEST(task.daysToEvent(), "days");
        QCOMPARE(task.empty(), !due.isValid());
    }

    void settersWriteThrough()
    {
        const LogWatch log;
        StoreBuilder builder;
        setSharedStorage(&builder.store);
        const TodoTask::Id id = builder.task(TaskStorage::ms_inboxId, u"Old"_s);
        TodoTask task = builder.store.get(id);
        const qint32 before = builder.store.modification();
        const QDateTime due(QDate(2026, 4, 1), QTime(12, 0));
        task.rename(u"New"_s);
        task.rename(u"New"_s);
        task.setNotes(u"Some"_s);
        task.setTimeDue(due);
        task.setCompleted(true);
        task.setCompleted(true);
        const TodoTask stored = builder.store.get(id);
        QCOMPARE(stored.name(), u"New"_s);
        QCOMPARE(stored.notes(), u"Some"_s);
        QCOMPARE(stored.timeDue(), due);
        QVERIFY(stored.completed());
        QCOMPARE(stored.timeCompleted(), Clock::now());
        QCOMPARE(builder.store.modification(), before + 4);
        task.setCompleted(false);
        QVERIFY(!builder.store.get(id).timeCompleted().isValid());

        FocusGroup inbox = builder.store.getGroup(TaskStorage::ms_inboxId);
        inbox.add(id);
        QCOMPARE(builder.store.modification(), before + 5);
        const FocusGroup::Id home = builder.store.createGroup(u"Home"_s, {});
        inbox.move(id, home);
        QVERIFY(inbox.tasks().isEmpty());
        QCOMPARE(builder.members(home), QList{id});
        const TodoTask::Id second = builder.task(home, u"Second"_s);
        FocusGroup group = builder.store.getGroup(home);
        group.reorder(id, true, {second});
        QCOMPARE(builder.members(home), (QList{second, id}));
        QCOMPARE(group.tasks().toList(), (QList{second, id}));
        group.remove(second, true);
        group.rename(u"House"_s);
        group.setIconName(u"home"_s);
        QCOMPARE(builder.store.getGroup(home).name(), u"House"_s);
        QCOMPARE(builder.store.getGroup(home).iconName(), u"home"_s);
        group.remove(id, false);
        QVERIFY(builder.members(home).isEmpty());
        QCOMPARE(builder.members(TaskStorage::ms_trashId), QList{id});
        setSharedStorage(nullptr);
    }

    /// A listener replaces the group and deletes the task whose setters are running.
    void listenersMayTakeTheRecordAway()
    {
        const LogWatch log;
        StoreBuilder builder;
        setSharedStorage(&builder.store);
        const FocusGroup::Id home = builder.store.createGroup(u"Home"_s, {});
        QList<TodoTask::Id> ids;
        for (const QString& name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s})
            ids += builder.task(home, name);
        auto task = std::make_unique<TodoTask>(builder.store.get(ids.first()));
        FocusGroup group = builder.store.getGroup(home);
        const QObject listener;
        connect(&builder.store, &TaskStorage::taskChanged, &listener, [&task] { task.reset(); });
        connect(&builder.store, &TaskStorage::groupChanged, &listener,
                [&] { group = builder.store.getGroup(home); });
        task->setNotes(u"Some"_s);
        QVERIFY(!task);
        QCOMPARE(builder.store.get(ids.first()).notes(), u"Some"_s);
        // Each identifier is an entry of the list that it changes.
        const auto entry = [&group](int n) -> const QUuid& {
            return *std::next(group.tasks().begin(), n);
        };
        group.reorder(entry(2), false, {ids.at(1)});
        QCOMPARE(builder.members(home), (QList{ids.at(0), ids.at(2), ids.at(1), ids.at(3)}));
        group.move(entry(1), TaskStorage::ms_inboxId);
        group.remove(entry(1), false);
        QCOMPARE(builder.members(home), (QList{ids.at(0), ids.at(3)}));
        QCOMPARE(builder.members(TaskStorage::ms_inboxId), QList{ids.at(2)});
        QCOMPARE(builder.members(TaskStorage::ms_trashId), QList{ids.at(1)});
        setSharedStorage(nullptr);
    }
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "tst_records.moc"
