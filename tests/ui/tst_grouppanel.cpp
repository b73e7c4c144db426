// The panel of groups: what its entries show and take, its menu, its dialogs.
#include "app/base/DayWatch.h"
#include "tests/ui/WindowTest.h"
#include "ui/CountWidget.h"
#include "ui/EditGroupDialog.h"
#include "ui/controls/Prompt.h"

#include <QLineEdit>
#include <QMenu>
#include <QTimer>

using namespace Qt::StringLiterals;

class GroupPanelTest : public WindowTest
{
    Q_OBJECT

private:
    using WindowTest::entry;
    FocusGroupWidget* entry(const QString& name)
    {
        for (FocusGroupWidget* one : panel().entries()) {
            if (one->group().name() == name)
                return one;
        }
        return nullptr;
    }
    FocusGroup::Id idOf(const QString& name) { return entry(name)->groupId(); }
    QString current() { return store().getGroup(panel().groupId()).name(); }
    QString counts(const QString& name)
    {
        const auto* bar = entry(name)->findChild<CountWidget*>();
        QStringList numbers;
        for (int i = 0; i < bar->sectionsCount(); ++i)
            numbers += QString::number(bar->sectionValue(i));
        return numbers.join(u',');
    }
    TodoTask::Id addTask(const QString& group, int days = TodoTask::noDueDate)
    {
        const TodoTask::Id id = store().createTask(idOf(group));
        if (days != TodoTask::noDueDate)
            store().setTaskDueTime(id, Clock::now().addDays(days));
        return id;
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
        store().createGroup(u"Home"_s, u"home"_s);
        store().createGroup(u"Work"_s, {});
        panel().refresh();
    }
    void cleanup()
    {
        Prompt::setAnswerer({});
        WindowTest::cleanup();
    }

    void openTasksCountByTheirDays()
    {
        for (const int days : {-1, 0, 1, 2, 3, TodoTask::noDueDate})
            addTask(u"Home"_s, days);
        store().completeTask(addTask(u"Home"_s), true, Clock::now());
        QTRY_COMPARE(counts(u"Home"_s), u"2,2,2"_s);
        QCOMPARE(counts(u"Work"_s), u"0,0,0"_s);
        QCOMPARE(entry(u"Work"_s)->findChild<CountWidget*>()->sizeHint().width(), 0);
    }

    void countsFollowEveryChange()
    {
        const TodoTask::Id a = addTask(u"Home"_s, 0);
        const TodoTask::Id b = addTask(u"Home"_s, 1);
        panel()._onHighlightGroups(a);
        QVERIFY(entry(u"Home"_s)->highlighted() && !entry(u"Work"_s)->highlighted());
        store().addTask(idOf(u"Work"_s), a);
        QTRY_COMPARE(counts(u"Work"_s), u"1,0,0"_s);
        // A changed task shows at once, in every group that holds it.
        store().setTaskDueTime(a, Clock::now().addDays(2));
        store().setTaskDueTime(a, Clock::now().addDays(9));
        QCOMPARE(counts(u"Home"_s), u"0,1,1"_s);
        QCOMPARE(counts(u"Work"_s), u"0,0,1"_s);
        store().completeTask(b, true, Clock::now());
        QCOMPARE(counts(u"Home"_s), u"0,0,1"_s);
        Clock::freeze(Clock::now().addDays(8));
        Q_EMIT panel().findChild<DayWatch*>()->dayChanged();
        QTRY_COMPARE(counts(u"Home"_s), u"0,1,0"_s);
        store().removeTask(idOf(u"Home"_s), a, false);
        QTRY_COMPARE(counts(u"Home"_s), u"0,0,0"_s);
    }

    void menu_data()
    {
        QTest::addColumn<QString>("over");
        QTest::addColumn<QString>("shown");
        QTest::newRow("no entry") << QString() << u"Add group,Export..."_s;
        QTest::newRow("custom") << u"Home"_s << u"(Edit),Add group,(Remove),Export..."_s;
        QTest::newRow("Completed") << u"Completed"_s << u"Export..."_s;
        QTest::newRow("empty Trash") << u"Trash"_s << u"(Empty Trash),Export..."_s;
    }

    void menu()
    {
        QFETCH(QString, over);
        const QWidget* target = entry(over);
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
        QTEST(texts.join(u','), "shown");
        QCOMPARE(current(), u"Inbox"_s);
        menu->close();
    }

    void groupsAreAddedAndEdited()
    {
        fillDialog(u"New <b>one</b>"_s);
        QTest::mouseDClick(panel().viewport(), Qt::LeftButton, {},
                           {20, panel().viewport()->height() / 2});
        QCOMPARE(groups(), u"Inbox,Home,Work,New <b>one</b>,Completed,Trash"_s);
        QCOMPARE(current(), u"New <b>one</b>"_s);
        QCOMPARE(list().groupId(), panel().groupId());

        fillDialog(u"Renamed"_s);
        QTest::mouseDClick(entry(current()), Qt::LeftButton, {}, {30, 8});
        QCOMPARE(entry(current())->accessibleName(), u"Renamed"_s);
    }

    void groupIsRemovedOnceConfirmed()
    {
        panel().setCurrentGroup(idOf(u"Home"_s));
        addTask(u"Home"_s, 0);
        QMessageBox::StandardButton answer = QMessageBox::No;
        Prompt::setAnswerer([&](const Prompt::Question& /*question*/) { return answer; });
        panel()._onRemoveGroup();
        QCOMPARE(current(), u"Home"_s);
        // An edit in the group ends in the group.
        list().newTask();
        answer = QMessageBox::Yes;
        panel()._onRemoveGroup();
        QCOMPARE(groups(), u"Inbox,Work,Completed,Trash"_s);
        QTRY_COMPARE(counts(u"Trash"_s), u"1,0,0"_s);
        panel()._onRemoveGroup();
        QCOMPARE(current(), u"Inbox"_s);
    }

    void mouseAndKeysReachEveryGroup()
    {
        auto& actions = dynamic_singleton<ActionsHelper>::inst();
        addTasks({u"in trash"_s}, TaskStorage::ms_trashId);
        // Twice: the keys stay with the list also after a click on the current group.
        for (int i = 0; i < 2; ++i)
            QTest::mouseClick(entry(4), Qt::LeftButton);
        QVERIFY(entry(4)->selected() && !entry(0)->selected());
        QCOMPARE(shown(), u"in trash"_s);
        QVERIFY(!actions.newTask()->isEnabled() && !actions.cleanup()->isEnabled());
        key(Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(list().rows().count(), 1);
        key(Qt::Key_1, Qt::ControlModifier);
        QVERIFY(actions.newTask()->isEnabled() && actions.cleanup()->isEnabled());
        key(Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(current(), u"Home"_s);
        QVERIFY(listHasFocus());
        key(Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(current(), u"Inbox"_s);
        addTasks({u"a"_s});
        click(0);
        key(Qt::Key_F2);
        QVERIFY(row(0)->isEditing());
        key(Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!m_window->isVisible());
    }
};

QTEST_MAIN(GroupPanelTest)
#include "tst_grouppanel.moc"
