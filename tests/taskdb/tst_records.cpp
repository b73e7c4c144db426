// Task and group records by themselves, and what their setters write through.

#include "app/base/Clock.h"
#include "taskdb/SharedStorage.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class RecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Clock::freeze(QDateTime(QDate(2026, 3, 15), QTime(10, 30))); }
    void cleanup()
    {
        setSharedStorage(nullptr);
        Clock::release();
    }

    void countsDaysByTheCalendar()
    {
        const QDate today = Clock::today();
        const QList<std::pair<QDateTime, int>> due{
            {{}, 2147483647},
            {today.startOfDay(), 0},
            {QDateTime(today.addDays(1), QTime(0, 1)), 1},
            {QDateTime(today.addDays(-1), QTime(23, 59)), -1},
            // The clocks change on the 29th: a day of 23 hours is a day.
            {today.addDays(15).startOfDay(), 15},
            {QDateTime::fromMSecsSinceEpoch(Q_INT64_C(999'999'999'999'999'999)), 2147483646},
        };
        for (const auto& [time, days] : due) {
            TodoTask task;
            task.setTimeDue(time);
            QCOMPARE(task.daysToEvent(), days);
            QCOMPARE(task.empty(), !time.isValid());
        }
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
        for (int twice = 0; twice < 2; ++twice) {
            task.rename(u"New"_s);
            task.setNotes(u"Some"_s);
            task.setTimeDue(due);
            task.setCompleted(true);
        }
        const TodoTask stored = builder.store.get(id);
        QCOMPARE(stored.toString(), u"New (Some)"_s);
        QCOMPARE(stored.timeDue(), due);
        QCOMPARE(stored.timeCompleted(), Clock::now());
        QCOMPARE(builder.store.modification(), before + 4);
        task.setCompleted(false);
        QVERIFY(!builder.store.get(id).timeCompleted().isValid());

        FocusGroup group = builder.store.getGroup(TaskStorage::ms_inboxId);
        group.add(id);
        QCOMPARE(builder.store.modification(), before + 5);
        group.rename(u"In"_s);
        group.setIconName(u"home"_s);
        group.remove(id, true);
        group.add(id);
        const FocusGroup kept = builder.store.getGroup(TaskStorage::ms_inboxId);
        QCOMPARE(kept.name() + kept.iconName(), u"Inhome"_s);
        QCOMPARE(kept.tasks().toList(), QList{id});
        QVERIFY(builder.members(TaskStorage::ms_trashId).isEmpty());
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
    }
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "tst_records.moc"
