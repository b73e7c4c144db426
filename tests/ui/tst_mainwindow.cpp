// The window as a user works with it, by mouse and keyboard, on a real store.

#include "tests/ui/WindowTest.h"
#include "ui/Toolbar.h"
#include "ui/controls/FancySplitter.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/TaskCheckbox.h"

#include <QScrollBar>

using namespace Qt::StringLiterals;

class MainWindowTest : public WindowTest
{
    Q_OBJECT

private:
    using Act = std::function<void()>;

    static ProgramSettings& settings() { return dynamic_singleton<ProgramSettings>::inst(); }

private Q_SLOTS:
    void newTaskIsNamedInPlaceAndStoredAtEveryKey()
    {
        dynamic_singleton<ActionsHelper>::inst().newTask()->trigger();
        keys(u"Bu"_s);
        QCOMPARE(inbox(), u"Bu"_s);
        keys(u"y milk"_s);
        key(Qt::Key_Return);
        // The Return that ended the edit does not start it again; the next one does.
        QVERIFY(!row(0)->isEditing());
        QCOMPARE(shown(), u"Buy milk"_s);
        QVERIFY(listHasFocus());
        key(Qt::Key_Return);
        QVERIFY(row(0)->isEditing());
        // After the other Enter, too.
        key(Qt::Key_Enter);
        QVERIFY(!row(0)->isEditing());
        key(Qt::Key_Return);
        QVERIFY(row(0)->isEditing());
        key(Qt::Key_Escape);
        QVERIFY(!row(0)->isEditing());
        key(Qt::Key_Escape);
        QVERIFY(!m_window->isVisible());
    }

    void newTaskLeftEmptyVanishes_data()
    {
        QTest::addColumn<Act>("end");
        QTest::newRow("Escape") << Act([this] { key(Qt::Key_Escape); });
        QTest::newRow("Return") << Act([this] { key(Qt::Key_Return); });
        QTest::newRow("click") << Act(
            [this] { QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, emptySpace()); });
        QTest::newRow("group") << Act(
            [this] { panel().setCurrentGroup(TaskStorage::ms_completedId); });
        QTest::newRow("cleanup") << Act([this] { list().cleanup(); });
        QTest::newRow("close") << Act([this] { m_window.reset(); });
        QTest::newRow("close, the only task") << Act([this] {
            store().removeTask(TaskStorage::ms_inboxId, task(0).id(), true);
            m_window.reset();
            addTasks({u"a"_s});
        });
    }

    void newTaskLeftEmptyVanishes()
    {
        QFETCH(Act, end);
        addTasks({u"a"_s});
        list().newTask();
        keys(u"x"_s);
        key(Qt::Key_Backspace);
        QCOMPARE(list().rows().count(), 2);
        end();
        QCOMPARE(inbox(), u"a"_s);
        QCOMPARE(store().getGroup(TaskStorage::ms_trashId).tasks().size(), 0);
        if (m_window)
            QCOMPARE(list().rows().count(), store().getGroup(list().groupId()).tasks().size());
    }

    void oldTaskThatWasEmptiedStays()
    {
        // Named once, it is new no more.
        list().newTask();
        keys(u"a"_s);
        key(Qt::Key_Return);
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, middleOf(0));
        QVERIFY(row(0)->isEditing());
        // The whole name is selected, ready to be typed over.
        key(Qt::Key_Delete);
        key(Qt::Key_Return);
        QCOMPARE(shown(), u"<Unnamed task>"_s);
        QCOMPARE(list().rows().count(), 1);
    }

    void doubleClickOnEmptySpaceAndShiftReturnMakeANewTask()
    {
        addTasks({u"a"_s});
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, emptySpace());
        QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, emptySpace());
        QVERIFY(list().rows().isSelected(1) && row(1)->isEditing());
        keys(u"b"_s);
        key(Qt::Key_Escape);
        key(Qt::Key_Return, Qt::ShiftModifier);
        keys(u"c"_s);
        QCOMPARE(inbox(), u"a,b,c"_s);
    }

    void mouseSelects()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
        click(1);
        QCOMPARE(selected(), u"b"_s);
        click(3, Qt::ControlModifier);
        QCOMPARE(selected(), u"b,d"_s);
        click(1, Qt::ShiftModifier);
        QCOMPARE(selected(), u"b,c,d"_s);
        click(4, Qt::ShiftModifier);
        QCOMPARE(selected(), u"d,e"_s);
        // A press on a selected row keeps the selection, for dragging; the release ends it.
        QTest::mousePress(list().viewport(), Qt::LeftButton, {}, middleOf(4));
        QCOMPARE(selected(), u"d,e"_s);
        QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, middleOf(4));
        QCOMPARE(selected(), u"e"_s);
        QVERIFY(row(4)->selected() && !row(3)->selected());
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, emptySpace());
        QCOMPARE(selected(), QString());
        QVERIFY(!dynamic_singleton<ActionsHelper>::inst().editTask()->isEnabled());
    }

    void keysSelectAndDelete()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s});
        key(Qt::Key_Up);
        key(Qt::Key_Up);
        key(Qt::Key_Up, Qt::ShiftModifier);
        key(Qt::Key_Delete);
        QCOMPARE(inbox(), u"c"_s);
        QCOMPARE(namesIn(TaskStorage::ms_trashId), u"a,b"_s);
        key(Qt::Key_A, Qt::ControlModifier);
        key(Qt::Key_Delete);
        QCOMPARE(inbox(), QString());
        QCOMPARE(list().rows().count(), 0);
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        QCOMPARE(list().currentIndex(), -1);
    }

    void tickingCompletesAndCleanupFiles()
    {
        addTasks({u"a"_s, u"b"_s, {}, u"c"_s, u"d"_s});
        QTest::mouseClick(row(1)->findChild<TaskCheckbox*>(), Qt::LeftButton);
        QVERIFY(task(1).completed());
        QCOMPARE(task(1).timeCompleted(), Clock::now());
        QVERIFY(row(1)->findChild<ElidedLabel*>()->font().strikeOut());
        QTest::mouseClick(row(4)->findChild<TaskCheckbox*>(), Qt::LeftButton);

        dynamic_singleton<ActionsHelper>::inst().cleanup()->trigger();
        QCOMPARE(shown(), u"a,c"_s);
        QCOMPARE(inbox(), u"a,c"_s);
        // From the bottom up.
        QCOMPARE(namesIn(TaskStorage::ms_completedId), u"d,b"_s);
        QCOMPARE(namesIn(TaskStorage::ms_trashId), QString());
        QCOMPARE(store().getGroup(TaskStorage::ms_trashId).tasks().size(), 1);
    }

    void tickingWhileEditingEndsTheEditAndUntickingGoesOn()
    {
        addTasks({u"a"_s});
        edit(0);
        QTest::mouseClick(row(0)->findChildren<TaskCheckbox*>().last(), Qt::LeftButton);
        QVERIFY(!row(0)->isEditing());
        QVERIFY(task(0).completed());
        edit(0);
        key(Qt::Key_End);
        QTest::mouseClick(row(0)->findChildren<TaskCheckbox*>().last(), Qt::LeftButton);
        QVERIFY(!task(0).completed());
        keys(u"b"_s);
        QCOMPARE(inbox(), u"ab"_s);
    }

    void listFollowsTheStore()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s});
        click(2);
        list().editTask();
        const TodoTask::Id a = list().rows().idAt(0);
        const TodoTask::Id c = list().rows().idAt(2);
        store().renameTask(a, u"<b>A</b>"_s);
        QCOMPARE(shown().section(u',', 0, 0), u"<b>A</b>"_s);
        store().removeTask(TaskStorage::ms_inboxId, list().rows().idAt(1), false);
        QTRY_COMPARE(list().rows().count(), 2);
        QVERIFY(row(1)->isEditing() && row(1)->taskId() == c);
        QCOMPARE(list().currentIndex(), 1);
        keys(u"typed"_s);
        QCOMPARE(inbox(), u"<b>A</b>,typed"_s);
        store().moveTasks(TaskStorage::ms_inboxId, TaskStorage::ms_completedId, {c});
        QTRY_COMPARE(list().rows().count(), 1);
        QVERIFY(!row(0)->isEditing());
    }

    void clickBelowTheFormHitsWhatWasPressed()
    {
        addNumberedTasks(8);
        edit(0);
        const QPoint onTwo = middleOf(2);
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, onTwo);
        QCOMPARE(selected(), u"2"_s);
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, onTwo);
        QVERIFY(row(2)->isEditing());
    }

    void viewSwitches()
    {
        QAction* toggle = dynamic_singleton<ActionsHelper>::inst().switchView();
        QVERIFY(panel().isVisible());
        QCOMPARE(toggle->text(), u"Compact"_s);
        m_window->findChild<FancySplitter*>()->setHandlePos(240);
        toggle->trigger();
        QVERIFY(settings().compactView);
        QTRY_COMPARE(toggle->text(), u"Normal"_s);
        QVERIFY(!panel().isVisible());
        QCOMPARE(list().width(), m_window->width() - 1);
        // Switched again before the animation has ended.
        toggle->trigger();
        toggle->trigger();
        toggle->trigger();
        QTRY_COMPARE(toggle->text(), u"Compact"_s);
        QCOMPARE(panel().width(), 240);
        QCOMPARE(list().width(), m_window->width() - 241);
    }

    void panelKeepsTheWidthItWasDraggedTo()
    {
        const int from = panel().width();
        QWindow* window = m_window->windowHandle();
        // Three pixels beside the line.
        QTest::mousePress(window, Qt::LeftButton, {}, {from + 3, 100});
        QTest::mouseMove(window, {from + 403, 100});
        QTest::mouseRelease(window, Qt::LeftButton, {}, {from + 403, 100});
        m_window->resize(320, 300);
        QVERIFY(list().isVisible() && list().width() >= 100);
        const auto* bar = m_window->findChild<Toolbar*>();
        for (const auto* button : bar->findChildren<FancyToolBtn*>()) {
            QVERIFY2(bar->rect().contains(button->geometry()), qPrintable(button->text()));
            QVERIFY2(button->isVisible(), qPrintable(button->text()));
        }
        m_window->resize(800, 300);
        QCOMPARE(panel().width(), from + 400);
        m_window.reset();
        QCOMPARE(settings().groupPanelWidth, from + 400);
        openWindow();
        QCOMPARE(panel().width(), from + 400);
    }

    void whatTheFileSaysIsShownInRangeAndKept()
    {
        const QRect narrow(40, 30, 250, 90);
        for (const auto& [stored, shown] : {std::pair(-5, 100), std::pair(1215752191, 149)}) {
            m_window.reset();
            settings().mainWindowFrame = narrow;
            settings().groupPanelWidth = stored;
            openWindow();
            QCOMPARE(panel().width(), shown);
            m_window.reset();
            QCOMPARE(settings().mainWindowFrame, narrow);
            QCOMPARE(settings().groupPanelWidth, stored);
        }
    }

    /// A large group has widgets for the rows in view only, and all of them can be reached.
    void largeGroupHasFewWidgets()
    {
        for (int i = 0; i < 20000; ++i)
            store().createTask(TaskStorage::ms_completedId);
        panel().setCurrentGroup(TaskStorage::ms_completedId);
        key(Qt::Key_Up);
        QCOMPARE(list().currentIndex(), 19999);
        QVERIFY(list().viewport()->rect().contains(middleOf(19999)));
        QScrollBar* bar = list().verticalScrollBar();
        for (int step = 0; step <= 20; ++step) {
            bar->setValue(bar->maximum() / 20 * step);
            // Wherever the list is scrolled to, rows fill it from top to bottom.
            for (int y = 0; y < list().viewport()->height(); y += 5) {
                if (list().rowAt({50, y}) >= 0)
                    QVERIFY(list().viewport()->childAt(50, y) != list().widget());
            }
        }
        QVERIFY(list().findChildren<TaskWidget*>().size() < 60);
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
