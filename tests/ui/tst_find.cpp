// The panel that finds tasks, groups and commands, over the window's list.

#include "tests/ui/WindowTest.h"
#include "ui/Toolbar.h"
#include "ui/find/FindPanel.h"
#include "ui/find/ResultList.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QLocale>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class FindTest : public WindowTest
{
    Q_OBJECT

    QPointer<FindPanel> m_panel;
    QStringList m_ran;

    ResultList& results() { return *m_panel->findChild<ResultList*>(); }
    QLineEdit& field() { return *m_panel->findChild<QLineEdit*>(); }

    QList<Command> commands()
    {
        const auto run = [this](const QString& text) {
            return [this, text] {
                m_ran += text + (m_panel && m_panel->isVisible() ? u" open"_s : u""_s);
            };
        };
        return {{u"New task"_s, u"Ctrl+N"_s, {}, true, run(u"new"_s), {}},
                {u"Never"_s, {}, {}, false, run(u"never"_s), {}},
                {u"Néw group"_s, {}, {}, true, run(u"group"_s), TaskStorage::ms_trashId}};
    }

    void open(FindPanel::EMode mode = FindPanel::Everything)
    {
        m_panel = new FindPanel(
            mode, [this] { return commands(); }, list().parentWidget());
        QVERIFY(field().hasFocus());
    }

    /// The rows as they are spoken.
    QString rows()
    {
        QStringList all;
        for (int row = 0; row < results().count(); ++row)
            all += results().spokenRow(row);
        return all.join(u'|');
    }

private Q_SLOTS:
    void init()
    {
        WindowTest::init();
        m_ran.clear();
    }

    void escapeLeavesNoTrace()
    {
        addNumberedTasks(60);
        edit(3);
        key(Qt::Key_Escape);
        list().verticalScrollBar()->setValue(200);
        edit(12);
        keys(u"typed"_s);
        auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        editor->setSelection(4, -3);
        const int scroll = list().verticalScrollBar()->value();
        open();
        keys(u"1"_s);
        QTRY_COMPARE(results().count(), 14);
        key(Qt::Key_Escape);
        QCOMPARE(QApplication::focusWidget(), editor);
        QCOMPARE(editor->cursorPosition(), 1);
        QCOMPARE(editor->selectedText(), u"ype"_s);
        QCOMPARE(list().rows().edited(), 12);
        QCOMPARE(list().verticalScrollBar()->value(), scroll);
        QTRY_VERIFY(!m_panel);
    }

    void listsCommands()
    {
        addTasks({u"A new one"_s});
        open(FindPanel::Commands);
        QCOMPARE(rows(), u"New task, Ctrl+N|Never|Néw group"_s);
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        QVERIFY(m_panel->isVisible());
        keys(u"grO NE"_s);
        QCOMPARE(rows(), u"Néw group"_s);
        m_panel->setMode(FindPanel::Everything);
        QCOMPARE(field().text(), u"grO NE"_s);
        keys(u"new"_s);
        QTRY_COMPARE(rows(), u"Néw group|A new one, in Inbox|New task, Ctrl+N"_s);
        QTest::mouseClick(results().viewport(), Qt::LeftButton, {}, results().rowRect(0).center());
        QCOMPARE(m_ran, QStringList{u"group"_s});
        QVERIFY(listHasFocus());
    }

    /// Keys that come faster than the results are meant for these.
    void keysStayInside()
    {
        addTasks({u"beta"_s, u"bet"_s, u"alphabet"_s});
        list().setFocus();
        click(0);
        open();
        QTest::keyClicks(&field(), u"zzz"_s);
        QTRY_COMPARE(results().count(), 0);
        for (const Qt::Key unused : {Qt::Key_Return, Qt::Key_Delete, Qt::Key_Tab, Qt::Key_Backtab,
                                     Qt::Key_Down, Qt::Key_Insert})
            QTest::keyClick(&field(), unused);
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent unused(type, Qt::Key_F5, {});
            QApplication::sendEvent(&field(), &unused);
            QVERIFY(unused.isAccepted());
        }
        QVERIFY(field().hasFocus() && m_window->isVisible());
        QCOMPARE(list().rows().edited(), -1);
        QCOMPARE(selected(), u"beta"_s);
        QCOMPARE(inbox(), u"beta,bet,alphabet"_s);

        QSignalSpy chosen(m_panel, &FindPanel::taskChosen);
        field().selectAll();
        QTest::keyClicks(&field(), u"Bet"_s);
        QTest::keyClick(&field(), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(&field(), Qt::Key_Up);
        QTest::keyClick(&field(), Qt::Key_Return, Qt::ControlModifier);
        QTRY_COMPARE(chosen.size(), 1);
        QCOMPARE(store().get(chosen.at(0).at(0).toUuid()).name(), u"bet"_s);
        QCOMPARE(chosen.at(0).at(1).toBool(), true);
        QVERIFY(listHasFocus());
        QCOMPARE(list().rows().edited(), -1);
    }

    void followsTheStore()
    {
        addTasks({u"key 1"_s, u"key 2"_s, u"other"_s});
        open();
        keys(u"key"_s);
        QTRY_COMPARE(rows(), u"key 1, in Inbox|key 2, in Inbox"_s);
        key(Qt::Key_Down);
        store().renameTask(store().createTask(TaskStorage::ms_inboxId), u"key"_s);
        const FocusGroup::Id group = store().createGroup(u"Home"_s, {});
        TodoTask changed = task(1);
        store().addTask(TaskStorage::ms_trashId, changed.id());
        store().addTask(group, changed.id());
        changed.setTimeDue(QDate(2026, 12, 3).startOfDay());
        const QString day = QLocale().toString(QDate(2026, 12, 3), QLocale::LongFormat);
        const QString line = u"key 2, in Inbox, Home, Trash, due "_s + day;
        QTRY_COMPARE(rows(), line + u"|key 1, in Inbox|key, in Inbox"_s);
        QCOMPARE(results().currentRow(), 0);
        changed.setCompleted(true);
        QTRY_COMPARE(rows(), u"key 1, in Inbox|key, in Inbox|"_s + line + u", completed"_s);
        QCOMPARE(results().currentRow(), 2);
    }

    void showsAnyNumber()
    {
        addNumberedTasks(5000);
        open();
        keys(u"0 "_s);
        QTRY_COMPARE(results().count(), 1 + 9 + 9 * 19 + 4 * 271);
        key(Qt::Key_End, Qt::ControlModifier);
        key(Qt::Key_Up);
        QVERIFY(field().hasFocus());
        const int row = results().count() - 2;
        QVERIFY(results().viewport()->rect().contains(results().rowRect(row)));
        auto* all = QAccessible::queryAccessibleInterface(&results());
        QCOMPARE(all->childCount(), row + 2);
        QAccessibleInterface* current = all->child(row);
        QCOMPARE(all->focusChild(), current);
        QCOMPARE(all->indexOfChild(current), row);
        QCOMPARE(current->text(QAccessible::Name), results().spokenRow(row));
        QVERIFY(current->state().focused && !current->state().offscreen);
        QVERIFY(all->child(0)->state().offscreen && !all->child(0)->state().focused);
        QCOMPARE(all->childAt(current->rect().center().x(), current->rect().center().y()), current);

        const TodoTask::Id chosen = results().taskId(row);
        const int scroll = results().verticalScrollBar()->value();
        addTasks({u"0, added"_s});
        QTRY_COMPARE(results().count(), row + 3);
        QCOMPARE(results().taskId(results().currentRow()), chosen);
        QCOMPARE(results().verticalScrollBar()->value(), scroll);
    }

    /// Notes are shown where the name has not all of the words, from near the first of these on.
    void quotesNotes_data()
    {
        QTest::addColumn<QString>("notes");
        QTest::addColumn<QString>("quoted");
        const QString far = u"far "_s.repeated(30'000);
        QTest::newRow("in the name as well") << u"a key"_s << u""_s;
        QTest::newRow("near") << u" a line,\nthen böth "_s << u"a line, then böth"_s;
        QTest::newRow("far") << u"some notes, rather long, and both\n"_s
                             << u"…rather long, and both"_s;
        QTest::newRow("further") << far.left(400) + u"both"_s
                                 << u'…' + u"far "_s.repeated(5) + u"both"_s;
        QTest::newRow("beyond what is shown") << far + u"both"_s << u""_s;
        QTest::newRow("without blanks")
            << u"😀"_s.repeated(30) + u"both"_s << u'…' + u"😀"_s.repeated(12) + u"both"_s;
    }
    void quotesNotes()
    {
        QFETCH(const QString, notes);
        QFETCH(const QString, quoted);
        addTasks({u"the key"_s});
        TodoTask only = task(0);
        only.setNotes(notes);
        open();
        keys(notes != u"a key"_s ? u"both key"_s : u"key"_s);
        QTRY_COMPARE(results().count(), 1);
        auto* row = QAccessible::queryAccessibleInterface(&results())->child(0);
        QCOMPARE(row->text(QAccessible::Description), quoted);
    }

    /// A click goes on to what was clicked; the focus stays where it has gone.
    void closesByLeaving()
    {
        addTasks({u"one"_s, u"two"_s});
        open();
        m_window->resize(260, 400);
        QTRY_VERIFY(m_window->rect().contains(m_panel->geometry()));
        QVERIFY(m_panel->geometry().bottom() >= list().mapTo(m_window.get(), QPoint()).y());
        QTest::mouseClick(m_panel, Qt::LeftButton, {}, QPoint(m_panel->width() / 2, 7));
        QVERIFY(m_panel->isVisible());
        QTest::mouseClick(entry(1), Qt::LeftButton);
        QTRY_VERIFY(!m_panel);
        QCOMPARE(panel().currentIndex(), 1);
        open();
        QTest::mouseClick(m_window->findChild<Toolbar*>(), Qt::LeftButton, {}, {2, 2});
        QTRY_VERIFY(!m_panel);
        QVERIFY(listHasFocus());
        open();
        panel().setFocus();
        QTRY_VERIFY(!m_panel);
        QCOMPARE(QApplication::focusWidget(), &panel());
        open();
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, {3, 3}, {3, 3});
        QApplication::sendEvent(&field(), &menu);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        QTRY_VERIFY(!QApplication::activePopupWidget());
        QVERIFY(m_panel->isVisible());
        m_window->hide();
        QTRY_VERIFY(!m_panel);
    }
};

QTEST_MAIN(FindTest)
#include "tst_find.moc"
