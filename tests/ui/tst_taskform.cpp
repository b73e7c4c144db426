// A task edited in place: its name, notes and due date.
#include "tests/ui/WindowTest.h"
#include "ui/controls/CalendarPopup.h"
#include "ui/controls/DateWidget.h"
#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/NotesTextEdit.h"

#include <QScrollBar>

using namespace Qt::StringLiterals;

class TaskFormTest : public WindowTest
{
    Q_OBJECT

private:
    /// What has been closed lives on unseen until the event loop turns.
    template <class Widget>
    static Widget* visibleIn(const QWidget& parent)
    {
        for (auto* widget : parent.findChildren<Widget*>()) {
            if (widget->isVisible())
                return widget;
        }
        return nullptr;
    }
    FancyLineEdit* name() { return visibleIn<FancyLineEdit>(list()); }
    NotesTextEdit* notes() { return visibleIn<NotesTextEdit>(list()); }
    DateWidget* dueDate() { return visibleIn<DateWidget>(list()); }
    QWidget* dateField() { return dueDate()->findChild<QLineEdit*>(); }
    CalendarPopup* popup() { return visibleIn<CalendarPopup>(list()); }

    void editNew()
    {
        addTasks({u"a"_s, u"b"_s});
        edit(0);
    }

private Q_SLOTS:
    void notesAreStoredAtEveryKeyAndGrow()
    {
        editNew();
        key(Qt::Key_Tab);
        const int height = row(0)->height();
        keys(u"one"_s);
        QCOMPARE(task(0).notes(), u"one"_s);
        QCOMPARE(row(0)->height(), height);
        key(Qt::Key_Return);
        key(Qt::Key_Return);
        QCOMPARE(task(0).notes(), u"one\n\n"_s);
        QVERIFY(row(0)->height() > height);
        QCOMPARE(row(0)->height(), list().rows().height(0));
        QVERIFY(row(1)->y() >= row(0)->y() + row(0)->height());
        key(Qt::Key_Backspace);
        key(Qt::Key_Backspace);
        QCOMPARE(row(0)->height(), height);
        for (int i = 0; i < 60; ++i)
            key(Qt::Key_Return);
        const QPoint cursor = notes()->cursorRect().center();
        const QPoint inView = notes()->mapTo(list().viewport(), cursor);
        QVERIFY2(list().viewport()->rect().contains(inView), "where one types");
    }

    void lookingChangesNothing()
    {
        addTasks({u"a"_s});
        store().attachNotesToTask(task(0).id(), u"keep\r\nme"_s);
        store().setTaskDueTime(task(0).id(), QDate(2013, 4, 3).startOfDay());
        const qint32 before = store().modification();
        edit(0);
        QCOMPARE(notes()->toPlainText(), u"keep\nme"_s);
        QCOMPARE(dueDate()->getValue().date(), QDate(2013, 4, 3));
        QVERIFY(name()->hasFocus());
        for (QWidget* field : {static_cast<QWidget*>(notes()), dateField()}) {
            key(Qt::Key_Tab);
            QVERIFY(field->hasFocus());
        }
        key(Qt::Key_Tab);
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(dateField()->hasFocus());
        key(Qt::Key_Escape);
        QCOMPARE(store().modification(), before);
        QCOMPARE(task(0).notes(), u"keep\r\nme"_s);
    }

    void dueDateIsStoredAsTyped()
    {
        editNew();
        key(Qt::Key_Tab);
        key(Qt::Key_Tab);
        keys(u"24.11.2026"_s);
        QCOMPARE(task(0).timeDue().date(), QDate(2026, 11, 24));
        QVERIFY(popup());
        // Back in another field, the calendar is gone.
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(!popup());
        key(Qt::Key_Tab);
        key(Qt::Key_Delete);
        QVERIFY(!task(0).timeDue().isValid());
        key(Qt::Key_Return);
        QVERIFY(row(0)->isEditing());
        key(Qt::Key_Escape);
        QVERIFY(!row(0)->isEditing());
    }

    /// Once a field has nothing to undo, the form closes and the step before it is undone.
    void undoKeysAreTheFieldsWhileTheyHaveAnythingToUndo()
    {
        addTasks({u"a"_s});
        store().setTaskDueTime(task(0).id(), Clock::today().startOfDay());
        int field = 0;
        for (const char* property : {"text", "plainText", "text"}) {
            edit(0);
            for (int tabs = 0; tabs < field; ++tabs)
                key(Qt::Key_Tab);
            ++field;
            const QWidget* editor = QApplication::focusWidget();
            const auto text = [&] { return editor->property(property).toString(); };
            const QString before = text();
            keys(u"7"_s);
            const QString typed = text();
            QVERIFY(typed != before);
            key(Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(text(), before);
            key(Qt::Key_Y, Qt::ControlModifier);
            QCOMPARE(text(), typed);
            key(Qt::Key_Z, Qt::ControlModifier);
            QVERIFY(row(0)->isEditing());
            QVERIFY(task(0).timeDue().isValid());
            key(Qt::Key_Z, Qt::ControlModifier);
            QVERIFY(!row(0)->isEditing());
            QVERIFY(!task(0).timeDue().isValid());
            key(Qt::Key_Y, Qt::ControlModifier);
            QVERIFY(task(0).timeDue().isValid());
        }
    }

    void clickBesideTheFieldsLeavesTheFocus()
    {
        editNew();
        key(Qt::Key_Tab);
        keys(u"x"_s);
        const QPoint beside = row(0)->mapTo(m_window.get(), QPoint(3, row(0)->height() - 3));
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, beside);
        QVERIFY(row(0)->isEditing());
        keys(u"y"_s);
        QCOMPARE(task(0).notes(), u"xy"_s);
        key(Qt::Key_Escape);
        QVERIFY(!row(0)->isEditing());
        QVERIFY(listHasFocus());
    }

    void changesFromElsewhereShowInTheForm()
    {
        editNew();
        key(Qt::Key_Tab);
        keys(u"typed"_s);
        key(Qt::Key_Left);
        store().renameTask(task(0).id(), u"other"_s);
        store().setTaskDueTime(task(0).id(), QDate(2026, 12, 1).startOfDay());
        QCOMPARE(name()->text(), u"other"_s);
        QCOMPARE(dueDate()->getValue().date(), QDate(2026, 12, 1));
        // What is being typed goes on where it was.
        keys(u"-"_s);
        QCOMPARE(task(0).notes(), u"type-d"_s);
        store().attachNotesToTask(task(0).id(), u"all new"_s);
        QCOMPARE(notes()->toPlainText(), u"all new"_s);
    }

    void nothingMovesWhileRowsAboveAndTheFormGo()
    {
        addNumberedTasks(60);
        list().verticalScrollBar()->setValue(400);
        const qsizetype middle = list().rowAt({50, 100});
        edit(middle);
        const TodoTask::Id id = list().rows().idAt(middle);
        const int place = row(middle)->mapTo(list().viewport(), QPoint()).y();
        for (int i = 0; i < 5; ++i)
            store().removeTask(TaskStorage::ms_inboxId, list().rows().idAt(i), false);
        QTRY_COMPARE(list().rows().count(), 55);
        QCOMPARE(list().rows().idAt(list().rows().edited()), id);
        QCOMPARE(row(middle - 5)->mapTo(list().viewport(), QPoint()).y(), place);
        QVERIFY(name()->hasFocus());

        list().verticalScrollBar()->setValue(1000);
        const TodoTask::Id top = list().rows().idAt(list().rowAt({50, 50}));
        key(Qt::Key_Escape);
        QCOMPARE(list().rows().idAt(list().rowAt({50, 50})), top);
        list().setGroup(TaskStorage::ms_completedId);
        QVERIFY2(!visibleIn<TaskWidget>(list()), "rows that nobody owns");
    }
};

QTEST_MAIN(TaskFormTest)
#include "tst_taskform.moc"
