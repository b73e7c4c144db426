// Task and group records: how near a task is, and groups as text.

#include "app/base/Clock.h"
#include "taskdb/ExportText.h"
#include "taskdb/SharedStorage.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;

class RecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsDaysByTheCalendar()
    {
        Clock::freeze(QDateTime(QDate(2026, 3, 15), QTime(10, 30)));
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
        }
        Clock::release();
    }

    /// A listener replaces the group and deletes the task whose setters are running.
    void listenersMayTakeTheRecordAway()
    {
        const LogWatch log;
        StoreBuilder builder;
        setSharedStorage(&builder.store);
        const FocusGroup::Id home = builder.store.createGroup(u"Home"_s, {});
        QList<TodoTask::Id> ids;
        for (const QString& name : {u"a"_s, u"b"_s, u"c"_s})
            ids += builder.task(home, name);
        auto task = std::make_unique<TodoTask>(builder.store.get(ids.first()));
        FocusGroup group = builder.store.getGroup(home);
        connect(&builder.store, &TaskStorage::taskChanged, this, [&task] { task.reset(); });
        connect(&builder.store, &TaskStorage::groupChanged, this,
                [&] { group = builder.store.getGroup(home); });
        task->setNotes(u"Some"_s);
        QCOMPARE(builder.store.get(ids.first()).notes(), u"Some"_s);
        // The identifier is an entry of the list that it changes.
        group.reorder(*std::next(group.tasks().begin(), 2), false, {ids.at(0)});
        QCOMPARE(builder.members(home), (QList{ids.at(1), ids.at(2), ids.at(0)}));
        group.remove(*group.tasks().begin(), false);
        QCOMPARE(builder.members(TaskStorage::ms_trashId), QList{ids.at(1)});
        setSharedStorage(nullptr);
    }

    void groupsAsText()
    {
        StoreBuilder builder;
        const FocusGroup::Id home = builder.store.createGroup(u"Дом %1 ]"_s, {});
        const TodoTask::Id task = builder.task(home, u"%1 %2"_s);
        builder.store.attachNotesToTask(task, u"%1\nb\r\nc\n"_s);
        builder.store.completeTask(builder.task(home, u" both 😀"_s), true, {});
        // Neither the last task has a record, nor the first group.
        builder.store.addTask(home, TodoTask::Id::createUuid());
        TaskStorageSnapsot snapshot(true);
        builder.store.takeSnapshot(snapshot);
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        writeExportText(buffer, snapshot, {FocusGroup::Id(), home, TaskStorage::ms_inboxId});
        QCOMPARE(buffer.data(), "[\xd0\x94\xd0\xbe\xd0\xbc %1 ]]\r\n- %1 %2 (%1\nb\r\nc)\r\n"
                                "= both \xf0\x9f\x98\x80\r\n\r\n[Inbox]\r\n\r\n"_ba);
    }
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "tst_records.moc"
