// Task and group records: how near a task is, and groups as text.

#include "app/base/Clock.h"
#include "taskdb/ExportText.h"
#include "taskdb/TaskStorageSnapsot.h"
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
