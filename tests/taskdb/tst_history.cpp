// Undo and redo: of everything, in steps, at the cost of what differs.
#include "taskdb/TaskStorageSnapsot.h"
#include "taskdb/TaskStorageWriter.h"
#include "taskdb/history/BackupDelta.h"
#include "taskdb/history/TaskHistory.h"
#include "tests/support/LogWatch.h"
#include "tests/support/StoreBuilder.h"
#include "tests/support/TemporaryHome.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

const FocusGroup::Id& inbox = TaskStorage::ms_inboxId;
const FocusGroup::Id& trash = TaskStorage::ms_trashId;
const QByteArray end = "</todos></taskdb>\n";

/// The database, behind the groups that there are.
QByteArray written(const TaskStorage& store)
{
    QList<FocusGroup::Id> groups;
    store.enumGroups(groups);
    QByteArray ids;
    for (const FocusGroup::Id& id : std::as_const(groups))
        ids += id.toByteArray();
    TaskStorageSnapsot snapshot;
    store.takeSnapshot(snapshot);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return TaskStorageWriter().write(&buffer, snapshot) ? ids + buffer.data() : QByteArray();
}

/// Does to a store whatever can be done to it.
class Walker
{
public:
    Walker(TaskStorage& store, TaskHistory& history)
        : m_store(store)
        , m_history(history)
    {
    }

    void step(int number)
    {
        if (number % 97 == 0)
            m_store.takeSnapshot(m_kept);
        if (_below(4) != 0) {
            _change();
            return;
        }
        const HistoryStep several(m_history, {EAction::editTask, _group(), {}});
        for (int i = _below(20); i >= 0; --i)
            _change();
    }

private:
    int _below(int bound) { return static_cast<int>(m_random.bounded(bound)); }
    FocusGroup::Id _group()
    {
        QList<FocusGroup::Id> groups;
        m_store.enumGroups(groups);
        return groups.at(_below(static_cast<int>(groups.size())));
    }
    TodoTask::Id _task() { return m_tasks.at(_below(static_cast<int>(m_tasks.size()))); }
    QList<TodoTask::Id> _some()
    {
        QList<TodoTask::Id> ids;
        m_store.enumGroup(_group(), ids);
        return ids.mid(ids.isEmpty() ? 0 : _below(static_cast<int>(ids.size())), _below(400));
    }

    void _change()
    {
        const QString text = QString::number(m_random.generate());
        const FocusGroup::Id group = _group();
        const QList<std::function<void()>> changes = {
            [&] {
                for (int i = _below(9); i >= 0; --i)
                    m_tasks += m_store.createTask(group);
            },
            [&] { m_store.renameTask(_task(), text); },
            [&] { m_store.attachNotesToTask(_task(), text); },
            [&] { m_store.setTaskDueTime(_task(), QDateTime::fromMSecsSinceEpoch(_below(99))); },
            [&] { m_store.completeTask(_task(), _below(2) == 0, QDateTime::currentDateTime()); },
            [&] { m_store.addTask(group, _task()); },
            [&] { m_store.addTasks(group, _some()); },
            [&] { m_store.removeTask(group, _task(), _below(2) == 0); },
            [&] { m_store.moveTasks(group, _group(), _some()); },
            [&] { m_store.reorderTasks(group, _task(), _below(2) == 0, _some()); },
            [&] { m_store.emptyTrash(); },
            [&] { m_store.createGroup(text, text); },
            [&] { m_store.renameGroup(group, text); },
            [&] { m_store.setGroupIcon(group, text); },
            [&] { m_store.removeGroup(_below(9) == 0 ? group : FocusGroup::Id()); },
            [&] { m_store.moveGroup(_below(5), group); },
            [&] { m_store.moveGroup(_group(), group); },
            [&] { m_history.apply({}, bringBackTasks(m_store, m_kept, _some(), text)); },
            [&] {
                if (_below(9) == 0)
                    m_history.apply({}, returnToVersion(m_store, m_kept));
            },
        };
        changes.at(_below(static_cast<int>(changes.size())))();
    }

    TaskStorage& m_store;
    TaskHistory& m_history;
    QRandomGenerator m_random{7};
    QList<TodoTask::Id> m_tasks = {QUuid::createUuid()};
    TaskStorageSnapsot m_kept;
};

} // namespace

class HistoryTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<StoreBuilder> m_built;
    std::unique_ptr<TaskHistory> m_history;

    TaskStorage& store() { return m_built->store; }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_built = std::make_unique<StoreBuilder>();
        m_history = std::make_unique<TaskHistory>(store(), 5000);
    }
    void cleanup()
    {
        m_history.reset();
        m_built.reset();
        m_home.reset();
    }

    void everythingCanBeTakenBack();
    void whatIsUndoneIsShown_data();
    void whatIsUndoneIsShown();
    void stepsAreWhatTheUserDid();
};

/// Tasks made later stay in the file behind the others, and in no group.
void HistoryTest::everythingCanBeTakenBack()
{
    constexpr int steps = 2000;
    QMap<size_t, QByteArray> forth = {{0, written(store())}};
    Walker walker(store(), *m_history);
    for (int i = 0; i < steps; ++i) {
        walker.step(i);
        if (i % 40 == 0 || i == steps - 1)
            forth.insert(m_history->undoCount(), written(store()));
    }
    QCOMPARE_GT(forth.size(), 50);
    QCOMPARE_GT(m_history->undoCount(), size_t{steps / 2});

    QMap<size_t, QByteArray> back;
    const auto visit = [&](bool backwards) {
        while (backwards ? m_history->canUndo() : m_history->canRedo()) {
            backwards ? m_history->undo() : m_history->redo();
            const size_t place = m_history->undoCount();
            if (!forth.contains(place))
                continue;
            const QByteArray now = written(store());
            QVERIFY(now.startsWith(forth.value(place).chopped(end.size())));
            if (!back.contains(place))
                back.insert(place, now);
            else
                QCOMPARE(now, back.value(place));
        }
    };
    QList<FocusGroup::Id> later;
    store().enumGroups(later);
    for (const bool backwards : {true, false, true, false}) {
        visit(backwards);
        for (const FocusGroup::Id& id : std::as_const(later))
            QCOMPARE(store().getGroup(id).id().isNull(), backwards && TaskStorage::isCustom(id));
    }
    QCOMPARE(written(store()), forth.last());
}

/// The first group of the row is shown after undo, the second after redo; so are the tasks.
void HistoryTest::whatIsUndoneIsShown_data()
{
    QTest::addColumn<std::function<void(const QList<TodoTask::Id>&, const FocusGroup::Id&)>>("act");
    QTest::addColumn<QString>("undone");
    QTest::addColumn<QString>("redone");
    using Act = std::function<void(const QList<TodoTask::Id>&, const FocusGroup::Id&)>;
    const auto row = [](const char* name, const Act& act, const QString& undone,
                        const QString& redone) { QTest::newRow(name) << act << undone << redone; };
    row(
        "rename", [this](auto& t, auto&) { store().renameTask(t[1], u"x"_s); }, u"Inbox:b"_s,
        u"Inbox:x"_s);
    row(
        "new", [this](auto&, auto&) { store().renameTask(store().createTask(inbox), u"n"_s); },
        u"Inbox:"_s, u"Inbox:n"_s);
    row(
        "delete",
        [this](auto& t, auto&) {
            store().removeTask(inbox, t[0], false);
            store().removeTask(inbox, t[1], false);
        },
        u"Inbox:a,b"_s, u"Inbox:"_s);
    row(
        "move", [this](auto& t, auto& g) { store().moveTasks(inbox, g, {t[1]}); }, u"Inbox:b"_s,
        u"Home:b"_s);
    row(
        "empty", [this](auto&, auto&) { store().emptyTrash(); }, u"Trash:c"_s, u"Trash:"_s);
    row(
        "remove group", [this](auto&, auto& g) { store().removeGroup(g); }, u"Home:d"_s, u":"_s);
    row(
        "move group", [this](auto&, auto& g) { store().moveGroup(1, g); }, u"Home:"_s, u"Home:"_s);
    row(
        "reorder", [this](auto& t, auto&) { store().reorderTasks(inbox, t[0], true, {t[1]}); },
        u"Inbox:b"_s, u"Inbox:b"_s);
}

void HistoryTest::whatIsUndoneIsShown()
{
    QFETCH(std::function<void(const QList<TodoTask::Id>&, const FocusGroup::Id&)>, act);
    const FocusGroup::Id home = store().createGroup(u"Home"_s, {});
    (void)store().createGroup(u"Work"_s, {});
    const QList<TodoTask::Id> tasks = {m_built->task(inbox, u"a"_s), m_built->task(inbox, u"b"_s)};
    (void)m_built->task(trash, u"c"_s);
    (void)m_built->task(home, u"d"_s);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    HistoryAction action;
    action.group = name == u"empty" ? trash : name.contains(u"group") ? home : inbox;
    if (name == u"reorder")
        action.tasks = {tasks[1]};

    QString shown;
    connect(m_history.get(), &TaskHistory::replacedContent, this, [&](const HistoryChange& change) {
        const FocusGroup::Id group = change.groupToShow(store(), inbox);
        QStringList names;
        for (const TodoTask::Id& id : change.tasksToSelect(store(), group))
            names += store().get(id).name();
        names.sort();
        shown = store().getGroup(group).name() + u':' + names.join(u',');
    });
    {
        const HistoryStep step(*m_history, action);
        act(tasks, home);
    }
    const QSignalSpy taskSignals(&store(), &TaskStorage::taskChanged);
    const QSignalSpy groupSignals(&store(), &TaskStorage::groupChanged);
    m_history->undo();
    QTEST(shown, "undone");
    m_history->redo();
    QTEST(shown, "redone");
    // Tells of what differs and of nothing else.
    QCOMPARE(taskSignals.size(), name == u"rename" ? 2 : 0);
    QCOMPARE_LE(groupSignals.size(), 4);
}

void HistoryTest::stepsAreWhatTheUserDid()
{
    const auto steps = [this] { return m_history->undoCount(); };
    const TodoTask::Id task = m_built->task(inbox, u"a"_s);
    QCOMPARE(steps(), 2); // not announced: each change a step

    m_history->begin({EAction::editTask, inbox, {}});
    for (const QString& name : {u"b"_s, u"bc"_s, u"bcd"_s})
        store().renameTask(task, name);
    QCOMPARE(m_history->actionToUndo(), EAction::editTask);
    {
        const HistoryStep tick(*m_history, {EAction::tick, inbox, {}});
        store().completeTask(task, true, QDateTime::currentDateTime());
    }
    store().renameTask(task, u"e"_s);
    m_history->end();
    QCOMPARE(steps(), 5);
    m_history->undo();
    QCOMPARE(store().get(task).name(), u"bcd"_s);
    m_history->undo();
    QCOMPARE(m_history->actionToRedo(), EAction::tick);
    m_history->undo();
    QCOMPARE(store().get(task).name(), u"a"_s);

    // What comes to nothing is no step, and leaves what can be redone.
    m_history->begin({EAction::newTask, inbox, {}});
    store().removeTask(inbox, store().createTask(inbox), true);
    store().renameTask(task, u"x"_s);
    store().renameTask(task, u"a"_s);
    m_history->end();
    QCOMPARE(steps(), 2);
    QVERIFY(m_history->canRedo());
    const qint32 counted = store().modification();
    m_history->redo();
    QCOMPARE(store().modification(), counted + 1);

    TaskHistory brief(store(), 3);
    for (int i = 0; i < 9; ++i)
        store().renameTask(task, QString::number(i));
    QVERIFY(!brief.canRedo());
    while (brief.canUndo())
        brief.undo();
    QCOMPARE(store().get(task).name(), u"5"_s);
    store().setJournal(nullptr);
}

QTEST_GUILESS_MAIN(HistoryTest)
#include "tst_history.moc"
