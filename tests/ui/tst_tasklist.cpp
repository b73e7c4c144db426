// What the task list shows of itself: hints on empty groups, the day, and what screen readers hear.
#include "app/base/DayWatch.h"
#include "tests/ui/WindowTest.h"
#include "ui/GroupHintWidget.h"

#include <QAccessible>
#include <QScreen>

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
