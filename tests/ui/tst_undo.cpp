// Undo, redo and find in the window, as a user works with them.
#include "app/base/CSafeFileUpdate.h"
#include "tests/ui/WindowTest.h"
#include "ui/BackupsDialog.h"
#include "ui/UndoNote.h"
#include "ui/controls/Prompt.h"
#include "ui/find/FindPanel.h"

#include <QAbstractButton>
#include <QAccessible>

using namespace Qt::StringLiterals;

class UndoTest : public WindowTest
{
    Q_OBJECT

private:
    FocusGroup::Id m_group;

    QString current() { return store().getGroup(panel().groupId()).name(); }
    UndoNote* note()
    {
        for (auto* one : m_window->findChildren<UndoNote*>()) {
            if (one->isVisible())
                return one;
        }
        return nullptr;
    }
    FindPanel* find() { return m_window->findChild<FindPanel*>(); }
    void undo() { key(Qt::Key_Z, Qt::ControlModifier); }
    void redo() { key(Qt::Key_Y, Qt::ControlModifier); }
    /// Opens the panel, types and has the best result chosen.
    void choose(Qt::Key opener, const QString& text, Qt::KeyboardModifiers modifiers = {})
    {
        key(opener, opener == Qt::Key_F ? Qt::ControlModifier : Qt::NoModifier);
        keys(text);
        key(Qt::Key_Return, modifiers);
        QTRY_VERIFY(!find());
    }

private Q_SLOTS:
    void init()
    {
        WindowTest::init();
        m_group = store().createGroup(u"Home"_s, {});
        panel().refresh();
        addTasks({u"a"_s, u"b"_s, u"c"_s});
        addTasks({u"d"_s, u"e"_s}, m_group);
        Prompt::setAnswerer([](const Prompt::Question& question) {
            return question.buttons & QMessageBox::Yes ? QMessageBox::Yes : QMessageBox::Ok;
        });
    }
    void cleanup()
    {
        Prompt::setAnswerer({});
        WindowTest::cleanup();
    }

    void undoGoesToWhereItWas()
    {
        click(0);
        click(2, Qt::ControlModifier);
        key(Qt::Key_Delete);
        panel().setCurrentGroup(m_group);
        row(0)->setCompleted(true);
        edit(1);
        keys(u"x"_s);
        key(Qt::Key_Escape);
        QCOMPARE(namesIn(m_group), u"d,x"_s);

        undo();
        QCOMPARE(selected(), u"e"_s);
        undo();
        QCOMPARE(selected(), u"d"_s);
        QVERIFY(!task(0).completed());
        QCOMPARE(note()->accessibleName(), u"Undone: tick"_s);
        undo();
        QCOMPARE(current(), u"Inbox"_s);
        QCOMPARE(selected(), u"a,c"_s);
        QCOMPARE(shown(), u"a,b,c"_s);
        redo();
        QCOMPARE(shown(), u"b"_s);
        redo();
        redo();
        QCOMPARE(current(), u"Home"_s);
        QCOMPARE(namesIn(m_group), u"d,x"_s);
        redo();
        QVERIFY(listHasFocus());
    }

    void openFormClosesFirst()
    {
        key(Qt::Key_N, Qt::ControlModifier);
        keys(u"new"_s);
        key(Qt::Key_Tab);
        undo();
        QCOMPARE(inbox(), u"a,b,c"_s);
        redo();
        QCOMPARE(inbox(), u"a,b,c,new"_s);
        QCOMPARE(selected(), u"new"_s);
        // One that was left empty is no step, also if something else was done meanwhile.
        const size_t steps = taskHistory().undoCount();
        key(Qt::Key_N, Qt::ControlModifier);
        undo();
        QCOMPARE(inbox(), u"a,b,c,new"_s);
        key(Qt::Key_N, Qt::ControlModifier);
        row(0)->setCompleted(true);
        QCOMPARE(taskHistory().undoCount(), steps + 1);
        undo();
        QCOMPARE(inbox(), u"a,b,c,new"_s);
        QVERIFY(!task(0).completed());
    }

    void groupsComeBackWithTheirTasks()
    {
        panel().setCurrentGroup(m_group);
        panel()._onRemoveGroup();
        QCOMPARE(note()->accessibleName(), u"Group removed: Home"_s);
        panel()._onEmptyTrash();
        QCOMPARE(note()->accessibleName(), u"Tasks gone from the Trash: 2"_s);
        undo();
        QCOMPARE(current(), u"Trash"_s);
        QCOMPARE(selected(), u"d,e"_s);
        undo();
        QCOMPARE(groups(), u"Inbox,Home,Completed,Trash"_s);
        QCOMPARE(current(), u"Home"_s);
        QCOMPARE(shown(), u"d,e"_s);
        QCOMPARE(namesIn(TaskStorage::ms_trashId), QString());
        // The group that is shown goes.
        for (int i = 0; i < 20 && taskHistory().canUndo(); ++i)
            undo();
        QCOMPARE(groups(), u"Inbox,Completed,Trash"_s);
        QCOMPARE(current(), u"Inbox"_s);
    }

    void noteOffersTheWayBack()
    {
        click(1);
        key(Qt::Key_Delete);
        const QPointer<UndoNote> deleted = note();
        const QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(deleted);
        QCOMPARE(heard->role(), QAccessible::Notification);
        QCOMPARE(heard->text(QAccessible::Name), u"Tasks deleted: 1"_s);
        QTest::mouseClick(deleted->findChild<QAbstractButton*>(), Qt::LeftButton);
        QCOMPARE(selected(), u"b"_s);
        QVERIFY(listHasFocus());
        QCOMPARE(note()->accessibleName(), u"Undone: deletion of tasks"_s);
        row(0)->setCompleted(true);
        QVERIFY(!note());
        list().cleanup();
        QCOMPARE(note()->accessibleName(), u"Tasks cleaned up: 1"_s);
        list().cleanup();
        QVERIFY(note());
    }

    void findGoesThere()
    {
        store().attachNotesToTask(store().getGroup(m_group).tasks().toList().last(), u"Mañana"_s);
        choose(Qt::Key_F, u"MANA"_s);
        QCOMPARE(current(), u"Home"_s);
        QCOMPARE(selected(), u"e"_s);
        QVERIFY(listHasFocus() && !row(1)->isEditing());
        choose(Qt::Key_F, u"b"_s, Qt::ControlModifier);
        QCOMPARE(current(), u"Inbox"_s);
        QVERIFY(row(1)->isEditing());
        keys(u"!"_s);
        // What is open stays so, behind the panel.
        key(Qt::Key_F, Qt::ControlModifier);
        QVERIFY(find() && row(1)->isEditing());
        key(Qt::Key_Escape);
        keys(u"?"_s);
        QCOMPARE(inbox(), u"a,!?,c"_s);
        choose(Qt::Key_F1, u"home"_s);
        QCOMPARE(current(), u"Home"_s);
        choose(Qt::Key_F1, u"undo"_s);
        QCOMPARE(inbox(), u"a,b,c"_s);
    }

    void backupsBringBack_data()
    {
        QTest::addColumn<bool>("entirely");
        QTest::newRow("missing tasks") << false;
        QTest::newRow("everything") << true;
    }

    void backupsBringBack()
    {
        QFETCH(bool, entirely);
        const QDir folder(taskStorage().backupFolder());
        QVERIFY(folder.mkpath(u"."_s));
        const QString path = folder.filePath(u"database-2026-10-01.xml"_s);
        QCOMPARE(store().saveCopy(path).state, ESafeWrite::done);
        store().removeTask(TaskStorage::ms_inboxId, task(0).id(), true);
        store().renameGroup(m_group, u"House"_s);

        choose(Qt::Key_F1, u"backups"_s);
        const QPointer<BackupsDialog> dialog = m_window->findChild<BackupsDialog*>();
        QVERIFY(dialog);
        const auto buttons = dialog->findChildren<QAbstractButton*>();
        QTRY_VERIFY(buttons.at(entirely)->isEnabled());
        buttons.at(entirely)->click();
        QTRY_VERIFY(!dialog);
        if (entirely) {
            QCOMPARE(groups(), u"Inbox,Home,Completed,Trash"_s);
            QCOMPARE(inbox(), u"a,b,c"_s);
        } else {
            QCOMPARE(current(), u"Backup of 01.10.2026"_s);
            QCOMPARE(selected(), u"a"_s);
        }
        QVERIFY(note());
        m_window->activateWindow();
        QTRY_VERIFY(listHasFocus());
        undo();
        QCOMPARE(inbox(), u"b,c"_s);
        QVERIFY(groups().contains(u"House"_s));
    }
};

QTEST_MAIN(UndoTest)
#include "tst_undo.moc"
