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
    QString said(int number) { return accessible()->child(number)->text(QAccessible::Name); }

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
        QVERIFY(task(2).notes().startsWith("Visit https://"_L1));
        QCOMPARE(task(3).notes(), QString());
    }

    void rowsAreRepaintedWhenTheDayChanges()
    {
        addTasks({u"a"_s});
        store().setTaskDueTime(list().rows().idAt(0), Clock::now().addDays(4));
        QCoreApplication::processEvents();
        const auto onScreen = [this] {
            return m_window->screen()->grabWindow(m_window->winId()).toImage();
        };
        const QImage before = onScreen();
        Clock::freeze(Clock::now().addDays(4));
        Q_EMIT list().findChild<DayWatch*>()->dayChanged();
        QTRY_VERIFY(onScreen() != before);
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
        key(Qt::Key_Delete);
        QVERIFY(!last->isValid() && last->state().invalid);
    }

    void screenReadersReachTheForm()
    {
        addTasks({u"a"_s, {}});
        QCOMPARE(said(1), u"<Unnamed task>"_s);
        QAccessibleInterface* first = accessible()->child(0);
        first->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(row(0)->isEditing());
        QCOMPARE(first->child(0)->parent(), first);
        QCOMPARE(accessible()->focusChild()->text(QAccessible::Name), u"Task name"_s);
        for (QWidget* widget : row(0)->findChildren<QWidget*>()) {
            const QAccessibleInterface* field = QAccessible::queryAccessibleInterface(widget);
            const bool control =
                widget->focusPolicy() & Qt::TabFocus || field->role() == QAccessible::CheckBox;
            if (widget->isVisible() && control)
                QVERIFY2(!field->text(QAccessible::Name).isEmpty(),
                         widget->metaObject()->className());
        }
    }
};

QTEST_MAIN(TaskListTest)
#include "tst_tasklist.moc"
