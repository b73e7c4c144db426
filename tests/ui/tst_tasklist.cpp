// What the task list shows of itself: hints on empty groups, the day, and what screen readers hear.
#include "app/base/DayWatch.h"
#include "tests/ui/WindowTest.h"
#include "ui/GroupHintWidget.h"
#include "ui/controls/FancyLineEdit.h"

#include <QAccessible>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {
/// Counts the paint events of what it watches.
class PaintCount : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};
} // namespace

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
    void clickHere() { Q_EMIT hint()->headStart(u"inboxheadstart"_s); }
    QAccessibleInterface* accessible() { return QAccessible::queryAccessibleInterface(&list()); }
    QString said(int number) { return accessible()->child(number)->text(QAccessible::Name); }

private Q_SLOTS:
    void emptyGroupShowsItsHint()
    {
        QVERIFY(hint());
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
        // The Trash has the task now; emptied elsewhere, it shows its hint.
        list().setGroup(TaskStorage::ms_trashId);
        QVERIFY(!hint());
        store().emptyTrash();
        QTRY_VERIFY(hint());
    }

    void cleanupOfEverythingShowsTheHint()
    {
        addTasks({u"a"_s});
        store().completeTask(list().rows().idAt(0), true, Clock::now());
        list().cleanup();
        QVERIFY(hint());
        QCOMPARE(namesIn(TaskStorage::ms_completedId), u"a"_s);
    }

    void headStartFillsTheInbox()
    {
        clickHere();
        QVERIFY(!hint());
        QCOMPARE(shown(), inbox());
        QCOMPARE(list().rows().count(), 4);
        const TodoTask first = store().get(list().rows().idAt(0));
        QCOMPARE(first.name(), u"Submit your ideas on features, any likes and dislikes"_s);
        QVERIFY(first.notes().startsWith("Visit http://"_L1));
        QVERIFY(first.notes().endsWith(" to submit ideas"_L1));
        QCOMPARE(store().get(list().rows().idAt(1)).notes(),
                 u"Right-click anywhere on the left panel and select \"Add group\" menu."_s);
        QVERIFY(store().get(list().rows().idAt(2)).notes().startsWith("Visit https://"_L1));
        QCOMPARE(store().get(list().rows().idAt(3)).name(), u"Have a coffee :)"_s);
        QCOMPARE(store().get(list().rows().idAt(3)).notes(), QString());
    }

    void headStartIsForTheInboxOnly()
    {
        const FocusGroup::Id home = store().createGroup(u"Home"_s, {});
        list().setGroup(home);
        clickHere();
        QCOMPARE(list().rows().count(), 0);
        QCOMPARE(inbox(), QString());
    }

    void rowsAreRepaintedWhenTheDayChanges()
    {
        addTasks({u"a"_s});
        store().setTaskDueTime(list().rows().idAt(0), Clock::now().addDays(4));
        QCoreApplication::processEvents();
        PaintCount paints;
        row(0)->installEventFilter(&paints);
        Q_EMIT list().findChild<DayWatch*>()->dayChanged();
        QTRY_VERIFY(paints.count > 0);
    }

    void screenReadersHearEveryRow()
    {
        QStringList names;
        for (int i = 0; i < 500; ++i)
            names += QString::number(i);
        addTasks(names);
        QCOMPARE(accessible()->role(), QAccessible::List);
        QCOMPARE(accessible()->childCount(), 500);
        QAccessibleInterface* last = accessible()->child(499);
        QCOMPARE(last->role(), QAccessible::ListItem);
        QCOMPARE(last->text(QAccessible::Name), u"499"_s);
        QVERIFY(last->state().offscreen && !last->state().selected && !last->state().checked);
        QCOMPARE(accessible()->indexOfChild(last), 499);
        QCOMPARE(last->parent(), accessible());

        // A row stays the same task while others come and go.
        store().removeTask(TaskStorage::ms_inboxId, list().rows().idAt(0), false);
        QTRY_COMPARE(list().rows().count(), 499);
        QCOMPARE(accessible()->indexOfChild(last), 498);
        QCOMPARE(accessible()->child(498), last);
        last->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(store().get(list().rows().idAt(498)).completed());
        QVERIFY(last->state().checked);

        key(Qt::Key_Up);
        QVERIFY(last->state().selected && last->state().focused && !last->state().offscreen);
        QCOMPARE(accessible()->focusChild(), last);
        QCOMPARE(accessible()->childAt(last->rect().center().x(), last->rect().center().y()), last);
        key(Qt::Key_Delete);
        QVERIFY(!last->isValid() && last->state().invalid);
        QCOMPARE(accessible()->indexOfChild(last), -1);
    }

    void screenReadersReachTheForm()
    {
        addTasks({u"a"_s, {}});
        QCOMPARE(said(1), u"<Unnamed task>"_s);
        accessible()->child(0)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
        QVERIFY(row(0)->isEditing());
        QAccessibleInterface* form = accessible()->child(0)->child(0);
        QVERIFY(form);
        QCOMPARE(form->parent(), accessible()->child(0));
        QCOMPARE(accessible()->focusChild()->text(QAccessible::Name), u"Task name"_s);
        QStringList unnamed;
        for (QWidget* widget : row(0)->findChildren<QWidget*>()) {
            const QAccessibleInterface* field = QAccessible::queryAccessibleInterface(widget);
            const bool control =
                widget->focusPolicy() & Qt::TabFocus || field->role() == QAccessible::CheckBox;
            if (widget->isVisible() && control && field->text(QAccessible::Name).isEmpty())
                unnamed += QString::fromLatin1(widget->metaObject()->className());
        }
        QCOMPARE(unnamed, QStringList());
    }
};

QTEST_MAIN(TaskListTest)
#include "tst_tasklist.moc"
