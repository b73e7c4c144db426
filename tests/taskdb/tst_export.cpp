// Groups as text, byte for byte.
#include "taskdb/ExportText.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "tests/support/StoreBuilder.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;

class TestExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void groups()
    {
        StoreBuilder builder;
        TaskStorage& store = builder.store;
        const FocusGroup::Id home = store.createGroup(u"Дом %1 ]"_s, {});
        const FocusGroup::Id empty = store.createGroup({}, {});
        const TodoTask::Id shared = builder.task(TaskStorage::ms_inboxId, u" both 😀"_s);
        const TodoTask::Id first = builder.task(home, u"%1 %2"_s);
        const TodoTask::Id blank = builder.task(home, {});
        store.attachNotesToTask(first, u"%1\nb\r\nc\n"_s);
        store.attachNotesToTask(blank, u" \n"_s);
        store.addTask(home, shared);
        store.reorderTasks(home, shared, false, {first});
        // A task that no record stands behind.
        store.addTask(home, TodoTask::Id::createUuid());
        store.completeTask(shared, true, {});

        TaskStorageSnapsot snapshot(true);
        store.takeSnapshot(snapshot);
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        const QList groups{home, empty, FocusGroup::Id::createUuid(), FocusGroup::Id(),
                           TaskStorage::ms_inboxId};
        writeExportText(buffer, snapshot, groups);
        QCOMPARE(buffer.data(),
                 "[\xd0\x94\xd0\xbe\xd0\xbc %1 ]]\r\n- \r\n= both \xf0\x9f\x98\x80\r\n"
                 "- %1 %2 (%1\nb\r\nc)\r\n\r\n[]\r\n\r\n"
                 "[Inbox]\r\n= both \xf0\x9f\x98\x80\r\n\r\n"_ba);
    }
};

QTEST_GUILESS_MAIN(TestExport)
#include "tst_export.moc"
