// The panel of groups: what its entries show and take, its menu, its dialogs.
#include "app/base/DayWatch.h"
#include "app/base/Prompt.h"
#include "tests/ui/RegisteredDrag.h"
#include "tests/ui/WindowTest.h"
#include "ui/CountWidget.h"
#include "ui/EditGroupDialog.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/FocusGroupWidget.h"

#include <QAccessible>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>

#include <boost/make_shared.hpp>

using namespace Qt::StringLiterals;

class GroupPanelTest : public WindowTest
{
    Q_OBJECT

private:
    FocusGroup::Id m_home;
    FocusGroup::Id m_work;

    FocusGroupListWidget& panel() { return *m_window->groupList(); }
    FocusGroupWidget* entry(const FocusGroup::Id& id)
    {
        for (FocusGroupWidget* one : panel().entries()) {
            if (one->groupId() == id)
                return one;
        }
        return nullptr;
    }
    QString order()
    {
        QStringList names;
        for (const FocusGroupWidget* one : panel().entries())
            names += one->group().name();
        return names.join(u',');
    }
    QString counts(const FocusGroup::Id& id)
    {
        const auto* bar = entry(id)->findChild<CountWidget*>();
        QStringList numbers;
        for (int i = 0; i < bar->sectionsCount(); ++i)
            numbers += QString::number(bar->sectionValue(i));
        return numbers.join(u',');
    }
    TodoTask::Id task(const FocusGroup::Id& group, int days = 9999)
    {
        const TodoTask::Id id = store().createTask(group);
        if (days != 9999)
            store().setTaskDueTime(id, Clock::now().addDays(days));
        return id;
    }
    FocusGroup::Id groupNamed(const QString& name)
    {
        if (name == u"Home"_s)
            return m_home;
        if (name == u"Work"_s)
            return m_work;
        if (name == u"Trash"_s)
            return TaskStorage::ms_trashId;
        return name == u"Inbox"_s ? TaskStorage::ms_inboxId : TaskStorage::ms_completedId;
    }
    /// Drags over the entry and drops there. Returns whether the entry let it in.
    bool drop(const boost::shared_ptr<DragGroup>& drag, FocusGroupWidget* target)
    {
        const RegisteredDrag dragged(drag);
        const QPoint point(20, 8);
        QDragEnterEvent enter(point, Qt::MoveAction, &dragged.data, Qt::LeftButton, {});
        enter.ignore();
        QCoreApplication::sendEvent(target, &enter);
        QDropEvent event(point, Qt::MoveAction, &dragged.data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(target, &event);
        return enter.isAccepted();
    }
    /// Answers the group dialog that opens next.
    void fillDialog(const QString& name)
    {
        QTimer::singleShot(0, this, [name] {
            auto* dialog = qobject_cast<EditGroupDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            dialog->findChild<QLineEdit*>()->setText(name);
            dialog->accept();
        });
    }

private Q_SLOTS:
    void init()
    {
        WindowTest::init();
        m_home = store().createGroup(u"Home"_s, u"home"_s);
        m_work = store().createGroup(u"Work"_s, {});
        panel().refresh();
    }
    void cleanup()
    {
        Prompt::setAnswerer({});
        WindowTest::cleanup();
    }

    void counts_data()
    {
        QTest::addColumn<QList<int>>("days"); // 9999: no due date; negative completed: see below
        QTest::addColumn<QString>("counted");
        QTest::newRow("none") << QList<int>{} << "0,0,0";
        QTest::newRow("overdue and today") << QList<int>{-1, 0} << "2,0,0";
        QTest::newRow("tomorrow and after") << QList<int>{1, 2} << "0,2,0";
        QTest::newRow("in three days") << QList<int>{3} << "0,0,1";
        QTest::newRow("no due date") << QList<int>{9999} << "0,0,1";
        QTest::newRow("all") << QList<int>{-5, 0, 1, 2, 3, 9999} << "2,2,2";
    }

    void counts()
    {
        QFETCH(QList<int>, days);
        QFETCH(QString, counted);
        for (const int day : days)
            task(m_home, day);
        store().completeTask(task(m_home), true, Clock::now());
        QTRY_COMPARE(counts(m_home), counted);
        QCOMPARE(counts(m_work), u"0,0,0"_s);
        const bool shown = entry(m_home)->findChild<CountWidget*>()->sizeHint().width() > 0;
        QCOMPARE(shown, !days.isEmpty());
    }

    void countsFollowEveryChange()
    {
        const TodoTask::Id a = task(m_home, 0);
        const TodoTask::Id b = task(m_home, 1);
        store().addTask(m_work, a);
        QTRY_COMPARE(counts(m_home), u"1,1,0"_s);
        QCOMPARE(counts(m_work), u"1,0,0"_s);
        QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(entry(m_home));
        QCOMPARE(heard->text(QAccessible::Name), u"Home, 1 due now, 1 soon"_s);
        QVERIFY(heard->role() == QAccessible::ListItem && !heard->state().selected);
        heard->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(heard->state().selected);
        // A changed task shows at once, in every group that holds it.
        store().setTaskDueTime(a, Clock::now().addDays(9));
        QCOMPARE(counts(m_home), u"0,1,1"_s);
        QCOMPARE(counts(m_work), u"0,0,1"_s);
        store().completeTask(b, true, Clock::now());
        QCOMPARE(counts(m_home), u"0,0,1"_s);
        store().removeTask(m_work, a, false);
        store().removeTask(m_home, a, false);
        QTRY_COMPARE(counts(TaskStorage::ms_trashId), u"0,0,1"_s);
        QCOMPARE(counts(m_home), u"0,0,0"_s);
        store().emptyTrash();
        QTRY_COMPARE(counts(TaskStorage::ms_trashId), u"0,0,0"_s);
    }

    void countsFollowTheDay()
    {
        task(m_home, 1);
        QTRY_COMPARE(counts(m_home), u"0,1,0"_s);
        Clock::freeze(Clock::now().addDays(1));
        Q_EMIT panel().findChild<DayWatch*>()->dayChanged();
        QTRY_COMPARE(counts(m_home), u"1,0,0"_s);
    }

    void barGrowsWithItsSections()
    {
        CountWidget bar(3, nullptr);
        QCOMPARE(bar.sizeHint(), QSize(0, 0));
        const int digit = bar.fontMetrics().horizontalAdvance(u'7');
        bar.setSectionValue(1, 7);
        QCOMPARE(bar.minimumSizeHint().width(), digit + 10);
        bar.setSectionValue(0, 7);
        QCOMPARE(bar.minimumSizeHint().width(), 2 * (digit + 8));
        bar.setSectionValue(2, 7);
        bar.setSectionValue(3, 7);
        QCOMPARE(bar.minimumSizeHint().width(), 2 * (digit + 8) + digit + 6);
    }

    void menu_data()
    {
        QTest::addColumn<QString>("over");
        QTest::addColumn<QString>("shown");
        QTest::newRow("no entry") << ""
                                  << "Add group,Export...";
        QTest::newRow("Inbox") << "Inbox"
                               << "Add group,Export...";
        QTest::newRow("custom") << "Home"
                                << "Edit,Add group,Remove,Export...";
        QTest::newRow("Completed") << "Completed"
                                   << "Export...";
        QTest::newRow("empty Trash") << "Trash"
                                     << "(Empty Trash),Export...";
    }

    void menu()
    {
        QFETCH(QString, over);
        QFETCH(QString, shown);
        const QWidget* target = over.isEmpty() ? nullptr : entry(groupNamed(over));
        const QPoint point = target ? target->mapTo(panel().viewport(), QPoint(30, 10))
                                    : QPoint(20, panel().viewport()->height() / 2);
        QContextMenuEvent event(QContextMenuEvent::Mouse, point,
                                panel().viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(panel().viewport(), &event);
        auto* menu = panel().findChild<QMenu*>();
        QVERIFY(menu && menu->isVisible());
        QStringList texts;
        for (const QAction* action : menu->actions()) {
            if (action->isVisible() && !action->isSeparator())
                texts += action->isEnabled() ? action->text() : u"(%1)"_s.arg(action->text());
        }
        QCOMPARE(texts.join(u','), shown);
        QCOMPARE(panel().groupId(), TaskStorage::ms_inboxId);
        menu->close();
    }

    void drops_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("copy");
        QTest::addColumn<int>("result"); // 0: refused
        QTest::addColumn<QString>("left");
        QTest::newRow("moved") << "Work" << false << 2 << "";
        QTest::newRow("copied") << "Work" << true << 1 << "t";
        QTest::newRow("moved to Inbox") << "Inbox" << false << 2 << "";
        QTest::newRow("copied to Inbox") << "Inbox" << true << 1 << "t";
        QTest::newRow("into the Trash") << "Trash" << true << 2 << "";
        QTest::newRow("into Completed") << "Completed" << true << 2 << "";
        QTest::newRow("onto its own group") << "Home" << false << 0 << "t";
    }

    void drops()
    {
        QFETCH(QString, target);
        QFETCH(bool, copy);
        QFETCH(int, result);
        QFETCH(QString, left);
        const TodoTask::Id id = task(m_home);
        store().renameTask(id, u"t"_s);
        const auto drag = boost::make_shared<DragGroup>(DragGroup::TasksDrag);
        drag->addTask(m_home, id);
        drag->setCopy(copy);
        QCOMPARE(drop(drag, entry(groupNamed(target))), result != 0);
        QCOMPARE(drag->result(), result);
        QCOMPARE(namesIn(m_home), left);
        QCOMPARE(namesIn(groupNamed(target)), u"t"_s);
    }

    void groupThatHoldsATaskTakesNoneOfTheDrag()
    {
        const TodoTask::Id held = task(m_home);
        store().addTask(m_work, held);
        const auto drag = boost::make_shared<DragGroup>(DragGroup::TasksDrag);
        drag->addTask(m_home, task(m_home));
        drag->addTask(m_home, held);
        QVERIFY(!drop(drag, entry(m_work)));
        QCOMPARE(store().getGroup(m_work).tasks().size(), 1);
    }

    void groupDrops_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("ordered");
        QTest::newRow("group") << "Home"
                               << "Inbox,Work,Home,Completed,Trash";
        QTest::newRow("itself") << "Work"
                                << "Inbox,Home,Work,Completed,Trash";
        QTest::newRow("Inbox") << "Inbox"
                               << "Inbox,Home,Work,Completed,Trash";
        QTest::newRow("Trash") << "Trash"
                               << "Inbox,Home,Work,Completed,Trash";
    }

    void groupDrops()
    {
        QFETCH(QString, target);
        QFETCH(QString, ordered);
        const auto drag = boost::make_shared<DragGroup>(DragGroup::GroupDrag);
        drag->setGroupId(m_work);
        drop(drag, entry(groupNamed(target)));
        panel().refresh();
        QCOMPARE(order(), ordered);
    }

    void dragsHighlightTheGroupsOfTheTask()
    {
        const TodoTask::Id id = task(m_home);
        panel()._onHighlightGroups(id);
        QVERIFY(entry(m_home)->highlighted() && !entry(m_work)->highlighted());
        panel()._onHighlightGroups({});
        QVERIFY(!entry(m_home)->highlighted());
    }

    void groupsAreAddedEditedAndRemoved()
    {
        fillDialog(u"New <b>one</b>"_s);
        QTest::mouseDClick(panel().viewport(), Qt::LeftButton, {},
                           {20, panel().viewport()->height() / 2});
        QCOMPARE(order(), u"Inbox,Home,Work,New <b>one</b>,Completed,Trash"_s);
        const FocusGroup::Id added = panel().groupId();
        QCOMPARE(store().getGroup(added).name(), u"New <b>one</b>"_s);
        QCOMPARE(panel().currentIndex(), 3);
        QCOMPARE(list().groupId(), added);

        fillDialog(u"Renamed"_s);
        QTest::mouseDClick(entry(added), Qt::LeftButton, {}, {30, 8});
        QCOMPARE(store().getGroup(added).name(), u"Renamed"_s);
        QCOMPARE(entry(added)->accessibleName(), u"Renamed"_s);
        QTest::mouseDClick(entry(TaskStorage::ms_trashId), Qt::LeftButton, {}, {30, 8});

        panel().setCurrentGroup(added);
        task(added, 0);
        QStringList asked;
        QMessageBox::StandardButton answer = QMessageBox::No;
        Prompt::setAnswerer([&](const Prompt::Question& question) {
            asked += question.text;
            return answer;
        });
        panel()._onRemoveGroup();
        QCOMPARE(panel().groupId(), added);
        answer = QMessageBox::Yes;
        panel()._onRemoveGroup();
        QCOMPARE(asked.last(), u"Do you really want to remove the selected group?"_s);
        QCOMPARE(panel().groupId(), TaskStorage::ms_inboxId);
        QCOMPARE(order(), u"Inbox,Home,Work,Completed,Trash"_s);
        QVERIFY(store().getGroup(added).id().isNull());
        QTRY_COMPARE(counts(TaskStorage::ms_trashId), u"1,0,0"_s);
        const qsizetype before = asked.size();
        panel()._onRemoveGroup();
        QCOMPARE(asked.size(), before);
    }

    void newGroupIsScrolledIntoView()
    {
        for (int i = 0; i < 40; ++i)
            store().createGroup(QString::number(i), {});
        panel().refresh();
        QCoreApplication::processEvents();
        fillDialog(u"last"_s);
        panel()._onAddGroup();
        const FocusGroupWidget* added = entry(panel().groupId());
        QCOMPARE(added->group().name(), u"last"_s);
        QVERIFY(panel().viewport()->rect().contains(
            QRect(added->mapTo(panel().viewport(), QPoint()), added->size())));
    }

    void removingAGroupEndsTheEditInIt()
    {
        panel().setCurrentGroup(m_home);
        list().newTask();
        Prompt::setAnswerer([](const Prompt::Question&) { return QMessageBox::Yes; });
        panel()._onRemoveGroup();
        QCOMPARE(store().getGroup(TaskStorage::ms_trashId).tasks().size(), 0);
    }

    void keysReachEveryGroup()
    {
        key(Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(panel().groupId(), m_home);
        QVERIFY(listHasFocus());
        key(Qt::Key_5, Qt::ControlModifier);
        QCOMPARE(panel().groupId(), TaskStorage::ms_trashId);
        key(Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(list().rows().count(), 0);
        key(Qt::Key_1, Qt::ControlModifier);
        key(Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(panel().groupId(), TaskStorage::ms_inboxId);
        key(Qt::Key_N, Qt::ControlModifier);
        keys(u"a"_s);
        key(Qt::Key_Return);
        QCOMPARE(inbox(), u"a"_s);
        key(Qt::Key_F2);
        QVERIFY(row(0)->isEditing());
        key(Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!m_window->isVisible());
    }
};

QTEST_MAIN(GroupPanelTest)
#include "tst_grouppanel.moc"
