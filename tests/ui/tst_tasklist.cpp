// The task list: its keys, and what it shows of itself: hints, the day, what screen readers hear.
#include "app/base/DayWatch.h"
#include "tests/ui/WindowTest.h"
#include "ui/GroupHintWidget.h"
#include "ui/UndoNote.h"

#include <QAccessible>
#include <QClipboard>
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
        using Step = std::tuple<Qt::Key, Qt::KeyboardModifiers, qsizetype, qsizetype>;
        for (const auto& [which, modifiers, current, selectedCount] :
             {Step(Qt::Key_PageUp, {}, 100 - page, 1), Step(Qt::Key_Home, {}, 0, 1),
              Step(Qt::Key_PageDown, {}, page, 1),
              Step(Qt::Key_End, Qt::ShiftModifier, 99, 100 - page),
              Step(Qt::Key_Home, Qt::ShiftModifier, 0, page + 1)}) {
            key(which, modifiers);
            QCOMPARE(list().currentIndex(), current);
            QCOMPARE(list().rows().selectedCount(), selectedCount);
            QVERIFY(list().viewport()->rect().contains(list().rowRect(current)));
        }
        click(2);
        click(4, Qt::ControlModifier);
        key(Qt::Key_Down, Qt::ShiftModifier);
        key(Qt::Key_Down, Qt::ShiftModifier);
        key(Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(selected(), u"2,4,5"_s);
        // What else is selected ends the run: the next one begins at the current row.
        key(Qt::Key_A, Qt::ControlModifier);
        key(Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(list().rows().selectedCount(), 100);
    }

    void keysTickCopyAndPaste()
    {
        QClipboard* clipboard = QGuiApplication::clipboard();
        addTasks({u"a"_s, u"b"_s, u"c"_s});
        store().attachNotesToTask(task(0).id(), u"more"_s);
        store().completeTask(task(1).id(), true, Clock::now());
        key(Qt::Key_Home);
        key(Qt::Key_Down, Qt::ShiftModifier);
        for (const QString& copied : {u"= a (more)\r\n= b\r\n"_s, u"- a (more)\r\n- b\r\n"_s}) {
            key(Qt::Key_Space);
            key(Qt::Key_C, Qt::ControlModifier);
            QCOMPARE(clipboard->text(), copied);
        }

        clipboard->setText(u"\n = d\t \r-e\r\n- \r\n"_s + clipboard->text());
        for (const FocusGroup::Id& group : {TaskStorage::ms_trashId, TaskStorage::ms_inboxId}) {
            panel().setCurrentGroup(group);
            key(Qt::Key_C, Qt::ControlModifier);
            key(Qt::Key_V, Qt::ControlModifier);
        }
        QCOMPARE(selected(), u"d,-e,a (more),b"_s);
        QVERIFY(!task(2).completed() && task(3).completed() && !task(4).completed());
        QCOMPARE(namesIn(TaskStorage::ms_trashId), QString());
    }

    void keysOpenTheMenuOfTheGroup()
    {
        const auto menu = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
        for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
            QContextMenuEvent event(reason, {}, {});
            QCoreApplication::sendEvent(list().viewport(), &event);
            QCOMPARE(menu() != nullptr, reason == QContextMenuEvent::Keyboard);
        }
        panel().setCurrentGroup(TaskStorage::ms_trashId);
        key(Qt::Key_F10, Qt::ShiftModifier);
        QCOMPARE(menu()->activeAction()->text(), u"Export..."_s);
    }

    void undoNoteFloatsOverTheList()
    {
        QPointer note(new UndoNote(u"done "_s.repeated(40), UndoNote::undo, &list()));
        QCOMPARE(QAccessible::queryAccessibleInterface(note)->role(), QAccessible::Notification);
        m_window->resize(250, 300);
        const QRect area(list().mapTo(m_window.get(), QPoint()), list().size());
        QCOMPARE(note->geometry(), area.adjusted(8, area.height() - 8 - note->height(), -8, -8));
        const QSignalSpy undo(note, &UndoNote::wanted);
        const auto* button = note->findChild<QToolButton*>();
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {},
                          button->mapTo(m_window.get(), button->rect().center()));
        QCOMPARE(undo.size(), 1);
        QVERIFY(listHasFocus());
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
