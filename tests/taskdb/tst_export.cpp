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
    void taskLine_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("notes");
        QTest::addColumn<bool>("completed");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("open") << u" Buy milk "_s << u" \n"_s << false << "- Buy milk"_ba;
        QTest::newRow("done") << u"Call"_s << u"ask"_s << true << "= Call (ask)"_ba;
        QTest::newRow("lines in notes")
            << u"a"_s << u"b\nc\r\nd\n"_s << false << "- a (b\nc\r\nd)"_ba;
        QTest::newRow("placeholders") << u"%1 %2"_s << u"%1"_s << true << "= %1 %2 (%1)"_ba;
        QTest::newRow("other scripts") << u"Čaj 茶"_s << u"😀"_s << false
                                       << "- \xc4\x8c"
                                          "aj \xe8\x8c\xb6 (\xf0\x9f\x98\x80)"_ba;
    }
    void taskLine()
    {
        QFETCH(QString, name);
        QFETCH(QString, notes);
        QFETCH(bool, completed);
        QFETCH(QByteArray, line);
        StoreBuilder builder;
        const TodoTask::Id id = builder.task(TaskStorage::ms_inboxId, name);
        builder.store.attachNotesToTask(id, notes);
        builder.store.completeTask(id, completed, {});
        QCOMPARE(exported(builder.store, {TaskStorage::ms_inboxId}),
                 "[Inbox]\r\n" + line + "\r\n\r\n");
    }

    void groups()
    {
        StoreBuilder builder;
        TaskStorage& store = builder.store;
        const FocusGroup::Id home = store.createGroup(u"Дом %1 ]"_s, {});
        const FocusGroup::Id empty = store.createGroup({}, {});
        const TodoTask::Id shared = builder.task(TaskStorage::ms_inboxId, u"both"_s);
        const TodoTask::Id first = builder.task(home, u"first"_s);
        store.addTask(home, shared);
        store.reorderTasks(home, shared, false, {first});
        // A task that no record stands behind.
        store.addTask(home, TodoTask::Id::createUuid());
        store.completeTask(shared, true, {});

        const QByteArray homeText = "[\xd0\x94\xd0\xbe\xd0\xbc %1 ]]\r\n= both\r\n- first\r\n\r\n";
        const QByteArray inboxText = "[Inbox]\r\n= both\r\n\r\n";
        QCOMPARE(exported(store, {home, TaskStorage::ms_inboxId}), homeText + inboxText);
        QCOMPARE(exported(store, {TaskStorage::ms_inboxId, empty, FocusGroup::Id::createUuid(),
                                  FocusGroup::Id(), home}),
                 inboxText + "[]\r\n\r\n" + homeText);
        QCOMPARE(exported(store, {}), QByteArray());
    }

private:
    static QByteArray exported(const TaskStorage& store, const QList<FocusGroup::Id>& groups)
    {
        TaskStorageSnapsot snapshot(true);
        store.takeSnapshot(snapshot);
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        writeExportText(buffer, snapshot, groups);
        return buffer.data();
    }
};

QTEST_GUILESS_MAIN(TestExport)
#include "tst_export.moc"
