// Every operation of the store, with what it counts and tells.

#include "app/base/Clock.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"

#include <QTest>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// A store with known content, and what it told while an operation ran.
///   Inbox: a, b   Home: b, c   Work: c   Completed: d   Trash: e   nowhere: f
struct Fixture
{
    StoreBuilder builder;
    TaskStorage& store = builder.store;
    const FocusGroup::Id inbox = TaskStorage::ms_inboxId;
    const FocusGroup::Id completed = TaskStorage::ms_completedId;
    const FocusGroup::Id trash = TaskStorage::ms_trashId;
    const FocusGroup::Id home = store.createGroup(u"Home"_s, u"home"_s);
    const FocusGroup::Id work = store.createGroup(u"Work"_s, {});
    const FocusGroup::Id nobody = QUuid::createUuid();
    const TodoTask::Id a = builder.task(inbox, u"a"_s);
    const TodoTask::Id b = builder.task(inbox, u"b"_s);
    const TodoTask::Id c = builder.task(home, u"c"_s);
    const TodoTask::Id d = builder.task(completed, u"d"_s);
    const TodoTask::Id e = builder.task(trash, u"e"_s);
    const TodoTask::Id f = builder.task(home, u"f"_s);
    const TodoTask::Id unknown = QUuid::createUuid();
    QStringList told;
    QObject listener;

    Fixture()
    {
        store.removeTask(home, f, true);
        store.moveTasks(home, home, {c});
        store.addTasks(home, {b});
        store.reorderTasks(home, c, true, {b});
        store.addTask(work, c);
        QObject::connect(&store, &TaskStorage::taskChanged, &listener,
                         [this](const TodoTask::Id& id) { told += u"task "_s + nameOf(id); });
        QObject::connect(&store, &TaskStorage::groupChanged, &listener,
                         [this](const FocusGroup::Id& id) { told += groupNameOf(id); });
    }

    [[nodiscard]] QString nameOf(const TodoTask::Id& id) const { return store.get(id).name(); }
    [[nodiscard]] QString groupNameOf(const FocusGroup::Id& id) const
    {
        return store.getGroup(id).name();
    }

    /// The content as "Inbox:a,b Completed:d …" in the order of the groups.
    [[nodiscard]] QString content() const
    {
        QList<FocusGroup::Id> groups;
        store.enumGroups(groups);
        QStringList parts;
        for (const FocusGroup::Id& id : groups) {
            QStringList names;
            for (const TodoTask::Id& task : builder.members(id))
                names += nameOf(task);
            parts += groupNameOf(id) + u':' + names.join(u',');
        }
        return parts.join(u' ');
    }
};

using Operation = std::function<void(Fixture&)>;

const QString unchanged = u"Inbox:a,b Completed:d Trash:e Home:b,c Work:c"_s;

} // namespace

Q_DECLARE_METATYPE(Operation)

class StorageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void operations_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QString>("content");
        QTest::addColumn<int>("counted");
        QTest::addColumn<QString>("told"); // "all" stands for one signal of each of five groups

        const auto row = [](const char* name, const Operation& operation, const QString& content,
                            int counted, const QString& told) {
            QTest::newRow(name) << operation << content << counted << told;
        };
        const auto nothing = [&row](const char* name, const Operation& operation) {
            row(name, operation, unchanged, 0, {});
        };

        row(
            "create", [](Fixture& x) { x.store.renameTask(x.store.createTask(x.home), u"n"_s); },
            u"Inbox:a,b Completed:d Trash:e Home:b,c,n Work:c"_s, 2, u"Home,task n"_s);
        row(
            "create in an unknown group",
            [](Fixture& x) { x.store.renameTask(x.store.createTask(x.nobody), u"n"_s); },
            u"Inbox:a,b,n Completed:d Trash:e Home:b,c Work:c"_s, 2, u"Inbox,task n"_s);
        nothing("create in no group", [](Fixture& x) { QVERIFY(x.store.createTask({}).isNull()); });

        row(
            "rename", [](Fixture& x) { x.store.renameTask(x.a, u"A"_s); },
            u"Inbox:A,b Completed:d Trash:e Home:b,c Work:c"_s, 1, u"task A"_s);
        nothing("rename to the same", [](Fixture& x) { x.store.renameTask(x.a, u"a"_s); });
        row(
            "notes", [](Fixture& x) { x.store.attachNotesToTask(x.a, u"x"_s); }, unchanged, 1,
            u"task a"_s);
        nothing("same notes", [](Fixture& x) { x.store.attachNotesToTask(x.a, {}); });
        row(
            "due", [](Fixture& x) { x.store.setTaskDueTime(x.a, Clock::now()); }, unchanged, 1,
            u"task a"_s);
        nothing("still not due", [](Fixture& x) { x.store.setTaskDueTime(x.a, {}); });
        row(
            "complete", [](Fixture& x) { x.store.completeTask(x.a, true, Clock::now()); },
            unchanged, 1, u"task a"_s);
        nothing("still open", [](Fixture& x) { x.store.completeTask(x.a, false, Clock::now()); });
        nothing("unknown and null tasks", [](Fixture& x) {
            for (const TodoTask::Id& id : {x.unknown, TodoTask::Id()}) {
                x.store.renameTask(id, u"x"_s);
                x.store.attachNotesToTask(id, u"x"_s);
                x.store.setTaskDueTime(id, Clock::now());
                x.store.completeTask(id, true, Clock::now());
                x.store.removeTask(x.home, id, false);
                x.store.moveTasks(x.home, x.work, {id});
            }
            x.store.addTask(x.home, {});
        });

        row(
            "add", [](Fixture& x) { x.store.addTask(x.work, x.a); },
            u"Inbox:a,b Completed:d Trash:e Home:b,c Work:c,a"_s, 1, u"Work"_s);
        row(
            "add a member", [](Fixture& x) { x.store.addTask(x.work, x.c); }, unchanged, 1,
            u"Work"_s);
        row(
            "add several",
            [](Fixture& x) {
                x.store.addTasks(x.work, {x.b, {}, x.c, x.a});
            },
            u"Inbox:a,b Completed:d Trash:e Home:b,c Work:c,b,a"_s, 1, u"Work"_s);
        nothing("add none", [](Fixture& x) { x.store.addTasks(x.work, {}); });

        row(
            "remove from one of two", [](Fixture& x) { x.store.removeTask(x.home, x.b, false); },
            u"Inbox:a,b Completed:d Trash:e Home:c Work:c"_s, 1, u"Home"_s);
        row(
            "remove the last", [](Fixture& x) { x.store.removeTask(x.inbox, x.a, false); },
            u"Inbox:b Completed:d Trash:e,a Home:b,c Work:c"_s, 1, u"Inbox"_s);
        row(
            "remove, skipping the Trash",
            [](Fixture& x) { x.store.removeTask(x.inbox, x.a, true); },
            u"Inbox:b Completed:d Trash:e Home:b,c Work:c"_s, 1, u"Inbox"_s);
        row(
            "remove from the Trash", [](Fixture& x) { x.store.removeTask(x.trash, x.e, false); },
            u"Inbox:a,b Completed:d Trash: Home:b,c Work:c"_s, 1, u"Trash"_s);

        row(
            "move",
            [](Fixture& x) {
                x.store.moveTasks(x.home, x.inbox, {x.c, x.b});
            },
            u"Inbox:a,b,c Completed:d Trash:e Home: Work:c"_s, 1, u"Home,Inbox"_s);
        row(
            "move to Completed", [](Fixture& x) { x.store.moveTasks(x.home, x.completed, {x.c}); },
            u"Inbox:a,b Completed:d,c Trash:e Home:b Work:"_s, 1, u"all,Completed"_s);
        row(
            "move within the Trash", [](Fixture& x) { x.store.moveTasks(x.home, x.trash, {x.e}); },
            unchanged, 1, u"all,Trash"_s);
        row(
            "restore", [](Fixture& x) { x.store.moveTasks(x.trash, x.home, {x.e}); },
            u"Inbox:a,b Completed:d Trash: Home:b,c,e Work:c"_s, 1, u"Trash,Home"_s);
        row(
            "move what is in no group",
            [](Fixture& x) { x.store.moveTasks(x.home, x.work, {x.f}); },
            u"Inbox:a,b Completed:d Trash:e Home:b,c Work:c,f"_s, 1, u"Home,Work"_s);

        row("reorder", [](Fixture& x) { x.store.reorderTasks(x.home, x.b, true, {x.c}); },
            u"Inbox:a,b Completed:d Trash:e Home:c,b Work:c"_s, 1, {});
        nothing("reorder nothing", [](Fixture& x) {
            x.store.reorderTasks(x.home, {}, true, {x.c});
            x.store.reorderTasks(x.home, x.b, true, {});
        });
        row(
            "empty the Trash", [](Fixture& x) { x.store.emptyTrash(); },
            u"Inbox:a,b Completed:d Trash: Home:b,c Work:c"_s, 1, u"Trash"_s);

        row("create a group", [](Fixture& x) { (void)x.store.createGroup(u"New"_s, {}); },
            unchanged + u" New:"_s, 1, {});
        row("rename a group", [](Fixture& x) { x.store.renameGroup(x.home, u"House"_s); },
            u"Inbox:a,b Completed:d Trash:e House:b,c Work:c"_s, 1, {});
        row("rename a group to the same",
            [](Fixture& x) { x.store.renameGroup(x.home, u"Home"_s); }, unchanged, 1, {});
        row("group icon", [](Fixture& x) { x.store.setGroupIcon(x.home, u"star"_s); }, unchanged, 1,
            {});
        row("remove a group", [](Fixture& x) { x.store.removeGroup(x.home); },
            u"Inbox:a,b Completed:d Trash:e,b,c Work:c"_s, 1, {});
        nothing("remove built-in groups", [](Fixture& x) {
            for (const FocusGroup::Id& id : {x.inbox, x.completed, x.trash})
                x.store.removeGroup(id);
        });
        row("move a group by place", [](Fixture& x) { x.store.moveGroup(x.home, x.work); },
            u"Inbox:a,b Completed:d Trash:e Work:c Home:b,c"_s, 1, {});
        row("move a group past the end", [](Fixture& x) { x.store.moveGroup(2, x.home); },
            u"Inbox:a,b Completed:d Trash:e Work:c Home:b,c"_s, 1, {});
        nothing("move a group nowhere", [](Fixture& x) {
            x.store.moveGroup(0, x.home);
            x.store.moveGroup(-1, x.home);
            x.store.moveGroup(3, x.home);
            x.store.moveGroup(0, x.inbox);
            x.store.moveGroup(x.inbox, x.home);
            x.store.moveGroup(x.home, x.trash);
        });
        nothing("unknown and null groups", [](Fixture& x) {
            for (const FocusGroup::Id& id : {x.nobody, FocusGroup::Id()}) {
                x.store.addTask(id, x.a);
                x.store.addTasks(id, {x.a});
                x.store.removeTask(id, x.a, false);
                x.store.moveTasks(id, x.home, {x.a});
                x.store.moveTasks(x.inbox, id, {x.a});
                x.store.reorderTasks(id, x.a, true, {x.b});
                x.store.renameGroup(id, u"x"_s);
                x.store.setGroupIcon(id, u"x"_s);
                x.store.removeGroup(id);
                x.store.moveGroup(0, id);
            }
        });
    }

    void operations()
    {
        QFETCH(Operation, operation);
        QFETCH(QString, content);
        QFETCH(int, counted);
        QFETCH(QString, told);
        LogWatch log;
        Fixture fixture;
        QCOMPARE(fixture.content(), unchanged);
        const qint32 before = fixture.store.modification();
        operation(fixture);
        QCOMPARE(fixture.content(), content);
        QCOMPARE(fixture.store.modification() - before, counted);
        if (told.startsWith(u"all"_s)) {
            QStringList each = fixture.told.first(5);
            each.sort();
            QCOMPARE(each.join(u','), u"Completed,Home,Inbox,Trash,Work"_s);
            fixture.told = QStringList{u"all"_s} + fixture.told.sliced(5);
        }
        QCOMPARE(fixture.told.join(u','), told);
        QCOMPARE(log.take(), QStringList());
    }

    void removedGroupForgetsEveryOccurrence()
    {
        const LogWatch log;
        StoreBuilder builder(QFINDTESTDATA("../data/odd/group-twice.xml"));
        QList<FocusGroup::Id> ids;
        builder.store.enumGroups(ids);
        QCOMPARE(ids.size(), 5);
        QCOMPARE(builder.store.getGroup(ids.last()).name(), u"Garden"_s);
        builder.store.removeGroup(ids.last());
        builder.store.enumGroups(ids);
        QCOMPARE(ids.size(), 3);
    }

    void handlersMayCallTheStore()
    {
        const LogWatch log;
        Fixture fixture;
        QObject::connect(&fixture.store, &TaskStorage::groupChanged, &fixture.listener,
                         [&fixture](const FocusGroup::Id& id) {
                             if (id == fixture.completed)
                                 fixture.store.removeGroup(fixture.home);
                         });
        fixture.store.moveTasks(fixture.home, fixture.completed, {fixture.b, fixture.c});
        QCOMPARE(fixture.content(), u"Inbox:a Completed:d,b,c Trash:e Work:"_s);
    }

    void snapshotsStayAsTheyWere()
    {
        const LogWatch log;
        Fixture fixture;
        TaskStorageSnapsot lists;
        TaskStorageSnapsot tables(true);
        for (TaskStorageSnapsot* snapshot : {&lists, &tables})
            fixture.store.takeSnapshot(*snapshot);
        const qint32 modification = fixture.store.modification();
        fixture.store.renameTask(fixture.a, u"changed"_s);
        fixture.store.moveTasks(fixture.inbox, fixture.trash, {fixture.a});
        fixture.store.removeGroup(fixture.work);

        QCOMPARE(lists.modification(), modification);
        QCOMPARE(lists.tasks().size(), 6);
        QStringList names;
        for (const FocusGroup& group : lists.groups())
            names += group.name();
        QCOMPARE(names.join(u','), u"Inbox,Completed,Trash,Home,Work"_s);
        QVERIFY(lists.groups().constFirst().contains(fixture.a));
        QCOMPARE(tables.taskTable().value(fixture.a).name(), u"a"_s);
        QVERIFY(tables.groupTable().contains(fixture.work));
        // Taking it again replaces everything.
        fixture.store.takeSnapshot(tables);
        QCOMPARE(tables.groupTable().size(), 4);
    }

    void counterWraps()
    {
        QCOMPARE(TaskStorage::nextModification(41), 42);
        QCOMPARE(TaskStorage::nextModification(std::numeric_limits<qint32>::max()), 0);
    }
};

QTEST_GUILESS_MAIN(StorageTest)
#include "tst_storage.moc"
