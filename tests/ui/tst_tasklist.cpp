// The task list: its keys, and what it shows of itself: hints, the day, what screen readers hear.
#include "app/base/DayWatch.h"
#include "tests/ui/WindowTest.h"
#include "ui/GroupHintWidget.h"
#include "ui/UndoNote.h"
#include "ui/controls/FancySplitter.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

class TaskListTest : public WindowTest
{
    Q_OBJECT

private:
    GroupHintWidget* hint()
    {
        for (auto* widget : list().findChildren<GroupHintWidget*>()) {
            if (widget->isVisible())
                return widget;
        }
        return nullptr;
    }
    QAccessibleInterface* accessible() { return QAccessible::queryAccessibleInterface(&list()); }

private Q_SLOTS:
    void emptyGroupShowsItsHint()
    {
        QVERIFY(list().viewport()->rect().contains(
            QRect(hint()->mapTo(list().viewport(), QPoint()), hint()->size())));
        list().newTask();
        QVERIFY(!hint());
        key(Qt::Key_Escape);
        QVERIFY(hint());
        addTasks({u"a"_s});
        QVERIFY(!hint());
        click(0);
        key(Qt::Key_Delete);
        QVERIFY(hint());
        addTasks({{}});
        list().cleanup();
        QVERIFY(hint());
        // The Trash has the tasks now; emptied elsewhere, it shows its hint.
        list().setGroup(TaskStorage::ms_trashId);
        QVERIFY(!hint());
        store().emptyTrash();
        QTRY_VERIFY(hint());
    }

    void linkFillsTheInbox()
    {
        Q_EMIT hint()->headStart({});
        // The second click of a double one comes to the list, the hint being gone.
        QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(150, 60), QPointF(150, 60),
                           Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(list().viewport(), &second);
        QVERIFY(!hint());
        QCOMPARE(list().rows().edited(), -1);
        QCOMPARE(shown(), inbox());
        QCOMPARE(list().rows().count(), 4);
        QVERIFY(task(0).notes().startsWith("Visit http://"_L1));
    }

    void keysMoveTheCurrentRow()
    {
        addNumberedTasks(100);
        qsizetype page = -1;
        while (list().viewport()->rect().contains(list().rowRect(page + 1)))
            ++page;
        struct Step
        {
            Qt::Key key;
            Qt::KeyboardModifiers modifiers;
            qsizetype current;
            qsizetype selected;
        };
        for (const Step& step : {Step{Qt::Key_PageUp, {}, 100 - page, 1},
                                 {Qt::Key_PageUp, {}, 100 - 2 * page, 1},
                                 {Qt::Key_Home, {}, 0, 1},
                                 {Qt::Key_PageDown, {}, page, 1},
                                 {Qt::Key_End, {}, 99, 1},
                                 {Qt::Key_PageDown, {}, 99, 1},
                                 {Qt::Key_Home, Qt::ShiftModifier, 0, 100},
                                 {Qt::Key_PageDown, Qt::ShiftModifier, page, 100 - page},
                                 {Qt::Key_Up, Qt::ShiftModifier, page - 1, 101 - page},
                                 {Qt::Key_End, Qt::ShiftModifier, 99, 1}}) {
            key(step.key, step.modifiers);
            QCOMPARE(list().currentIndex(), step.current);
            QCOMPARE(list().rows().selectedCount(), step.selected);
            QVERIFY(list().viewport()->rect().contains(list().rowRect(step.current)));
        }
    }

    void spaceTicksWhatIsSelected()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s});
        store().completeTask(task(0).id(), true, Clock::now().addDays(-1));
        key(Qt::Key_Home);
        key(Qt::Key_Down, Qt::ShiftModifier);
        key(Qt::Key_Space);
        QVERIFY(task(0).completed() && task(1).completed() && !task(2).completed());
        QCOMPARE(task(0).timeCompleted(), Clock::now().addDays(-1));
        key(Qt::Key_Space);
        QVERIFY(!task(0).completed() && !task(1).completed());
    }

    void tasksGoThroughTheClipboardAsLines()
    {
        QClipboard* clipboard = QGuiApplication::clipboard();
        addTasks({u"a"_s, u"b"_s});
        store().attachNotesToTask(task(0).id(), u"more"_s);
        store().completeTask(task(1).id(), true, Clock::now());
        key(Qt::Key_A, Qt::ControlModifier);
        key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboard->text(), u"- a (more)\r\n= b\r\n"_s);

        clipboard->setText(u"\n = c\t \r-d\r\n- \r\n"_s + clipboard->text());
        key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(inbox(), u"a,b,c,-d,a (more),b"_s);
        QCOMPARE(selected(), u"c,-d,a (more),b"_s);
        QVERIFY(task(2).completed() && !task(3).completed() && task(5).completed());
        panel().setCurrentGroup(TaskStorage::ms_trashId);
        key(Qt::Key_V, Qt::ControlModifier);
        key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(list().rows().count(), 0);
        QVERIFY(!clipboard->text().isEmpty());
    }

    void keysOpenTheMenuOfTheGroup()
    {
        const auto menu = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
        panel().setCurrentGroup(TaskStorage::ms_trashId);
        key(Qt::Key_F10, Qt::ShiftModifier);
        QCOMPARE(menu()->activeAction()->text(), u"Export..."_s);
        menu()->close();
        m_window->findChild<FancySplitter*>()->setHandlePos(0);
        QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(&list(), &byKey);
        QCOMPARE(menu()->pos(), m_window->mapToGlobal(QPoint()));
        menu()->close();
        QContextMenuEvent byMouse(QContextMenuEvent::Mouse, emptySpace(), {});
        QCoreApplication::sendEvent(list().viewport(), &byMouse);
        QVERIFY(!menu());
    }

    void undoNoteFloatsOverTheList()
    {
        addTasks({u"a"_s});
        edit(0);
        const QWidget* field = QApplication::focusWidget();
        QPointer note(new UndoNote(u"What was done. "_s.repeated(20), UndoNote::undo, &list()));
        const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(note);
        QCOMPARE(spoken->role(), QAccessible::Notification);
        QCOMPARE(spoken->text(QAccessible::Name), u"What was done. "_s.repeated(20));
        for (const int width : {700, 250}) {
            m_window->resize(width, 300);
            const QRect area(list().mapTo(m_window.get(), QPoint()), list().size());
            QCOMPARE(note->geometry().bottom(), area.bottom() - 8);
            QVERIFY(area.contains(note->geometry()));
            QVERIFY(qAbs(note->geometry().center().x() - area.center().x()) <= 1);
        }
        const QSignalSpy undo(note, &UndoNote::wanted);
        const auto* button = note->findChild<QToolButton*>();
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {},
                          button->mapTo(m_window.get(), button->rect().center()));
        QCOMPARE(undo.size(), 1);
        QCOMPARE(QApplication::focusWidget(), field);
        QTRY_VERIFY(!note);

        note = new UndoNote({}, UndoNote::redo, &list());
        auto* timer = note->findChild<QTimer*>();
        QVERIFY(note->isVisible() && timer->isActive());
        timer->start(0);
        QTRY_VERIFY(!note);
    }

    void rowColoursFollowTheDay()
    {
        addTasks({u"a"_s});
        store().setTaskDueTime(list().rows().idAt(0), Clock::now().addDays(4));
        const auto colour = [this] {
            QCoreApplication::processEvents();
            const QImage screen = m_window->screen()->grabWindow(m_window->winId()).toImage();
            return screen.pixelColor(row(0)->mapTo(m_window.get(), QPoint(200, 4)));
        };
        QList<QColor> seen = {colour()};
        for (const int days : {1, 2, 1, 3}) {
            Clock::freeze(Clock::now().addDays(days));
            Q_EMIT list().findChild<DayWatch*>()->dayChanged();
            seen += colour();
        }
        // In four days; in three and in one; today and overdue.
        QVERIFY(seen.at(0) != seen.at(1) && seen.at(1) == seen.at(2));
        QVERIFY(seen.at(2) != seen.at(3) && seen.at(3) == seen.at(4));
    }

    void screenReadersHearEveryRow()
    {
        addNumberedTasks(500);
        QCOMPARE(accessible()->role(), QAccessible::List);
        QCOMPARE(accessible()->childCount(), 500);
        QAccessibleInterface* last = accessible()->child(499);
        QCOMPARE(last->role(), QAccessible::ListItem);
        QCOMPARE(last->text(QAccessible::Name), u"499"_s);
        QVERIFY(last->state().offscreen && !last->state().selected && !last->state().checked);
        QCOMPARE(last->parent(), accessible());

        // A row stays the same task while others come and go.
        store().removeTask(TaskStorage::ms_inboxId, list().rows().idAt(0), false);
        QTRY_COMPARE(list().rows().count(), 499);
        QCOMPARE(accessible()->indexOfChild(last), 498);
        QCOMPARE(accessible()->child(498), last);
        last->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(task(498).completed());
        QVERIFY(last->state().checked);

        key(Qt::Key_Up);
        QVERIFY(last->state().selected && last->state().focused && !last->state().offscreen);
        QCOMPARE(accessible()->focusChild(), last);
        QCOMPARE(accessible()->childAt(last->rect().center().x(), last->rect().center().y()), last);
        last->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(accessible()->focusChild()->text(QAccessible::Name), u"Task name"_s);
        key(Qt::Key_Escape);
        key(Qt::Key_Delete);
        QVERIFY(!last->isValid() && last->state().invalid);
    }
};

QTEST_MAIN(TaskListTest)
#include "tst_tasklist.moc"
