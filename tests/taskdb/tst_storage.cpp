// Every operation of the store, with what it counts and tells.

#include "app/base/Clock.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

/// A store with known content, what it told, and operations on it in words.
struct Fixture
{
    StoreBuilder builder;
    TaskStorage& store = builder.store;
    QHash<QString, QUuid> ids{{u"Inbox"_s, TaskStorage::ms_inboxId},
                              {u"Completed"_s, TaskStorage::ms_completedId},
                              {u"Trash"_s, TaskStorage::ms_trashId},
                              {u"unknown"_s, QUuid::createUuid()}};
    QStringList told;
    QObject listener;

    Fixture()
    {
        // The task f is in no group.
        for (const char* operation :
             {"createGroup Home", "createGroup Work", "create Inbox a", "create Inbox b",
              "create Home f", "remove Home f skipping", "add Home b", "create Home c",
              "add Work c", "create Completed d", "create Trash e"})
            run(QString::fromLatin1(operation));
        QObject::connect(&store, &TaskStorage::taskChanged, &listener,
                         [this](const QUuid& id) { told += u"task "_s + store.get(id).name(); });
        QObject::connect(&store, &TaskStorage::groupChanged, &listener,
                         [this](const QUuid& id) { told += store.getGroup(id).name(); });
    }

    /// The content as "Inbox:a,b", "Completed:d" and so on, in the order of the groups.
    [[nodiscard]] QStringList content() const
    {
        QList<FocusGroup::Id> groups;
        store.enumGroups(groups);
        QStringList parts;
        for (const FocusGroup::Id& id : groups) {
            QStringList names;
            for (const TodoTask::Id& task : builder.members(id))
                names += store.get(task).name();
            parts += store.getGroup(id).name() + u':' + names.join(u',');
        }
        return parts;
    }

    /// Names that stand for nothing are null identifiers.
    void run(const QString& operation)
    {
        const QStringList words = operation.split(u' ');
        const QString name = words.value(2);
        const QUuid first = ids.value(words.value(1));
        const QUuid second = ids.value(name);
        const auto from = [&](qsizetype position) {
            QList<QUuid> list;
            for (const QString& word : words.mid(position))
                list += ids.value(word);
            return list;
        };
        const QDateTime due = name.isEmpty() ? QDateTime() : Clock::now();
        const QHash<QString, std::function<void()>> operations{
            {u"create"_s, [&] { ids.insert(name, builder.task(first, name)); }},
            {u"rename"_s, [&] { store.renameTask(first, name); }},
            {u"notes"_s, [&] { store.attachNotesToTask(first, name); }},
            {u"due"_s, [&] { store.setTaskDueTime(first, due); }},
            {u"complete"_s, [&] { store.completeTask(first, !name.isEmpty(), due); }},
            {u"add"_s, [&] { store.addTask(first, second); }},
            {u"addTasks"_s, [&] { store.addTasks(first, from(2)); }},
            {u"remove"_s, [&] { store.removeTask(first, second, words.size() > 3); }},
            {u"move"_s, [&] { store.moveTasks(first, second, from(3)); }},
            {u"reorder"_s, [&] { store.reorderTasks(first, second, true, from(3)); }},
            {u"emptyTrash"_s, [&] { store.emptyTrash(); }},
            {u"createGroup"_s,
             [&] { ids.insert(words.value(1), store.createGroup(words.value(1), {})); }},
            {u"renameGroup"_s, [&] { store.renameGroup(first, name); }},
            {u"icon"_s, [&] { store.setGroupIcon(first, name); }},
            {u"removeGroup"_s, [&] { store.removeGroup(first); }},
            {u"place"_s, [&] { store.moveGroup(second, first); }},
            {u"position"_s, [&] { store.moveGroup(name.toInt(), first); }},
        };
        operations.value(words.first())();
    }
};

} // namespace

class StorageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void operations_data()
    {
        QTest::addColumn<int>("counted");
        QTest::addColumn<QString>("told");
        QTest::addColumn<QString>("content"); // of the groups that change; "-" for one that goes
        const auto row = [](const char* operation, int counted = 0, const char* told = "",
                            const char* content = "") {
            QTest::newRow(operation)
                << counted << QString::fromLatin1(told) << QString::fromLatin1(content);
        };
        row("create Home n", 2, "Home,task n", "Home:b,c,n");
        row("create unknown n", 2, "Inbox,task n", "Inbox:a,b,n");
        row("create null n");
        row("rename a A", 1, "task A", "Inbox:A,b");
        row("rename a a");
        row("notes a x", 1, "task a");
        row("notes a");
        row("due a today", 1, "task a");
        row("due a");
        row("complete a yes", 1, "task a");
        row("complete a");
        row("add Work a", 1, "Work", "Work:c,a");
        row("add Work c", 1, "Work");
        row("addTasks Work b null c a", 1, "Work", "Work:c,b,a");
        row("addTasks Work");
        row("remove Home b", 1, "Home", "Home:c");
        row("remove Inbox a", 1, "Inbox", "Inbox:b Trash:e,a");
        row("remove Inbox a skipping", 1, "Inbox", "Inbox:b");
        row("remove Trash e", 1, "Trash", "Trash:");
        row("move Home Inbox c b", 1, "Home,Inbox", "Home: Inbox:a,b,c");
        row("move Home Completed c", 1, "Completed,Home,Inbox,Trash,Work,Completed",
            "Home:b Work: Completed:d,c");
        row("move Home Trash e", 1, "Completed,Home,Inbox,Trash,Work,Trash");
        row("move Trash Home e", 1, "Trash,Home", "Trash: Home:b,c,e");
        row("move Home Work f", 1, "Home,Work", "Work:c,f");
        row("reorder Home b c", 1, "", "Home:c,b");
        row("reorder Home null c");
        row("reorder Home b");
        row("emptyTrash", 1, "Trash", "Trash:");
        row("createGroup New", 1, "", "New:");
        row("renameGroup Work Job", 1, "", "-Work Job:c");
        row("renameGroup Home Home", 1);
        row("icon Home home", 1);
        row("removeGroup Home", 1, "", "-Home Trash:e,b,c");
        row("place Work Home", 1, "", "-Home Home:b,c");
        row("position Home 2", 1, "", "-Home Home:b,c");
        for (const char* operation :
             {"position Home 0", "position Home -1", "position Home 3", "position Inbox 0",
              "place Home Inbox", "place Trash Home", "removeGroup Inbox", "removeGroup Trash",
              "removeGroup Completed"})
            row(operation);
        for (const QByteArray& id : {"unknown"_ba, "null"_ba}) {
            for (const char* operation :
                 {"rename %", "notes % x", "due % today", "complete % yes", "remove Home %",
                  "move Home Work %", "add % a", "addTasks % a", "remove % a", "move % Home a",
                  "move Inbox % a", "reorder % a b", "renameGroup % x", "icon % x", "removeGroup %",
                  "position % 0"})
                row(QByteArray(operation).replace('%', id).constData());
        }
        row("add Home null");
    }

    void operations()
    {
        QFETCH(int, counted);
        QFETCH(QString, told);
        QFETCH(QString, content);
        LogWatch log;
        Fixture fixture;
        QStringList expected = u"Inbox:a,b Completed:d Trash:e Home:b,c Work:c"_s.split(u' ');
        QCOMPARE(fixture.content(), expected);
        for (const QString& part : content.split(u' ', Qt::SkipEmptyParts)) {
            const QString name = part.section(u':', 0, 0) + u':';
            const qsizetype at = expected.indexOf(expected.filter(name).value(0));
            if (part.startsWith(u'-'))
                expected.removeIf([&](const QString& old) { return old.startsWith(part.mid(1)); });
            else if (at < 0)
                expected += part;
            else
                expected[at] = part;
        }
        const qint32 before = fixture.store.modification();
        fixture.run(QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(fixture.content(), expected);
        QCOMPARE(fixture.store.modification() - before, counted);
        // Of every group at once there is no order.
        if (fixture.told.size() > 5)
            std::sort(fixture.told.begin(), fixture.told.begin() + 5);
        QCOMPARE(fixture.told.join(u','), told);
        QCOMPARE(log.take(), QStringList());
    }

    void handlersMayCallTheStore()
    {
        const LogWatch log;
        Fixture x;
        QObject::connect(&x.store, &TaskStorage::groupChanged, &x.listener, [&](const QUuid& id) {
            if (id == TaskStorage::ms_completedId)
                x.run(u"removeGroup Home"_s);
        });
        x.run(u"move Home Completed b c"_s);
        QCOMPARE(x.content().join(u' '), u"Inbox:a Completed:d,b,c Trash:e Work:"_s);
    }

    void snapshotsStayAsTheyWere()
    {
        const LogWatch log;
        Fixture x;
        TaskStorageSnapsot snapshot(true);
        x.store.takeSnapshot(snapshot);
        const TodoTask::Id a = x.ids.value(u"a"_s);
        for (const QString& change : {u"rename a A"_s, u"move Inbox Trash a"_s})
            x.run(change);
        QCOMPARE(snapshot.taskTable().value(a).name(), u"a"_s);
        QVERIFY(snapshot.groupTable().value(TaskStorage::ms_inboxId).contains(a));
        // Taking it again replaces everything.
        x.store.takeSnapshot(snapshot);
        QCOMPARE(snapshot.taskTable().value(a).name(), u"A"_s);
        QVERIFY(!snapshot.groupTable().value(TaskStorage::ms_inboxId).contains(a));
    }
};

QTEST_GUILESS_MAIN(StorageTest)
#include "tst_storage.moc"
