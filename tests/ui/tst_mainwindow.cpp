// The window as a user works with it, by mouse and keyboard, on a real store.

#include "tests/support/Capitals.h"
#include "tests/ui/WindowTest.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/FocusGroupWidget.h"
#include "ui/Toolbar.h"
#include "ui/controls/FancySplitter.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/TaskCheckbox.h"

#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;

class MainWindowTest : public WindowTest
{
    Q_OBJECT

private:
    static ProgramSettings& settings() { return dynamic_singleton<ProgramSettings>::inst(); }

private Q_SLOTS:
    void newTaskIsNamedInPlaceAndStoredAtEveryKey()
    {
        dynamic_singleton<ActionsHelper>::inst().newTask()->trigger();
        QVERIFY(row(0)->isEditing());
        keys(u"Bu"_s);
        QCOMPARE(inbox(), u"Bu"_s);
        keys(u"y milk"_s);
        key(Qt::Key_Return);
        QVERIFY(!row(0)->isEditing());
        QCOMPARE(shown(), u"Buy milk"_s);
        QVERIFY(listHasFocus());
        // The Return that ended the edit does not start it again; the next one does.
        QVERIFY(!row(0)->isEditing());
        key(Qt::Key_Return);
        QVERIFY(row(0)->isEditing());
        key(Qt::Key_Escape);
        QVERIFY(!row(0)->isEditing());
        QCOMPARE(inbox(), u"Buy milk"_s);
    }

    void newTaskLeftEmptyVanishes_data()
    {
        QTest::addColumn<QString>("end");
        for (const char* end :
             {"escape", "return", "click", "group", "cleanup", "close", "only one"})
            QTest::newRow(end) << QString::fromLatin1(end);
    }

    void newTaskLeftEmptyVanishes()
    {
        QFETCH(QString, end);
        const bool onlyOne = end == u"only one"_s;
        addTasks(onlyOne ? QStringList() : QStringList(u"a"_s));
        list().newTask();
        keys(u"x"_s);
        key(Qt::Key_Backspace);
        QCOMPARE(list().rows().count(), onlyOne ? 1 : 2);
        if (end == u"escape") {
            key(Qt::Key_Escape);
        } else if (end == u"return") {
            key(Qt::Key_Return);
        } else if (end == u"click") {
            QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, emptySpace());
        } else if (end == u"group") {
            m_window->groupList()->setCurrentGroup(TaskStorage::ms_completedId);
        } else if (end == u"cleanup") {
            list().cleanup();
        } else {
            m_window.reset();
        }
        QCOMPARE(inbox(), onlyOne ? QString() : u"a"_s);
        QCOMPARE(store().getGroup(TaskStorage::ms_trashId).tasks().size(), 0);
        if (m_window)
            QCOMPARE(list().rows().count(), end == u"group" ? 0 : 1);
    }

    void oldTaskThatWasEmptiedStays()
    {
        addTasks({u"a"_s});
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, middleOf(0));
        QVERIFY(row(0)->isEditing());
        // The whole name is selected, ready to be typed over.
        key(Qt::Key_Delete);
        key(Qt::Key_Return);
        QCOMPARE(shown(), u"<Unnamed task>"_s);
        QCOMPARE(list().rows().count(), 1);
    }

    void doubleClickOnEmptySpaceStartsANewTask()
    {
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, emptySpace());
        QVERIFY(row(0)->isEditing());
        keys(u"typed"_s);
        QCOMPARE(inbox(), u"typed"_s);
    }

    void mouseSelects()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
        click(1);
        QCOMPARE(selected(), u"b"_s);
        click(3, Qt::ControlModifier);
        QCOMPARE(selected(), u"b,d"_s);
        click(3, Qt::ControlModifier);
        QCOMPARE(selected(), u"b,d"_s);
        click(1, Qt::ShiftModifier);
        QCOMPARE(selected(), u"b,c,d"_s);
        click(4, Qt::ShiftModifier);
        QCOMPARE(selected(), u"d,e"_s);
        QCOMPARE(list().currentIndex(), 3);
        // A press on a selected row keeps the selection, for dragging; the release ends it.
        QTest::mousePress(list().viewport(), Qt::LeftButton, {}, middleOf(4));
        QCOMPARE(selected(), u"d,e"_s);
        QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, middleOf(4));
        QCOMPARE(selected(), u"e"_s);
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, emptySpace());
        QCOMPARE(selected(), QString());
        QVERIFY(!dynamic_singleton<ActionsHelper>::inst().editTask()->isEnabled());
        click(2, Qt::ShiftModifier);
        QCOMPARE(selected(), u"c"_s);
    }

    void keysSelectAndDelete()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s});
        key(Qt::Key_Up);
        QCOMPARE(selected(), u"c"_s);
        key(Qt::Key_Down);
        QCOMPARE(selected(), u"c"_s);
        key(Qt::Key_Up);
        key(Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(selected(), u"a,b"_s);
        key(Qt::Key_Up);
        QCOMPARE(selected(), u"a,b"_s);
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

    void shiftReturnMakesANewTask()
    {
        addTasks({u"a"_s});
        key(Qt::Key_Down);
        key(Qt::Key_Return, Qt::ShiftModifier);
        keys(u"b"_s);
        QCOMPARE(inbox(), u"a,b"_s);
    }

    void tickingCompletesAndCleanupFiles()
    {
        addTasks({u"a"_s, u"b"_s, {}, u"c"_s, u"d"_s});
        auto* box = row(1)->findChild<TaskCheckbox*>();
        QTest::mouseClick(box, Qt::LeftButton);
        const TodoTask done = store().get(list().rows().idAt(1));
        QVERIFY(done.completed());
        QCOMPARE(done.timeCompleted(), Clock::now());
        QVERIFY(row(1)->findChild<ElidedLabel*>()->font().strikeOut());
        QTest::mouseClick(box, Qt::LeftButton);
        QVERIFY(!store().get(done.id()).completed());
        QTest::mouseClick(box, Qt::LeftButton);
        QTest::mouseClick(row(4)->findChild<TaskCheckbox*>(), Qt::LeftButton);

        dynamic_singleton<ActionsHelper>::inst().cleanup()->trigger();
        QCOMPARE(shown(), u"a,c"_s);
        QCOMPARE(inbox(), u"a,c"_s);
        // From the bottom up.
        QCOMPARE(namesIn(TaskStorage::ms_completedId), u"d,b"_s);
        QCOMPARE(namesIn(TaskStorage::ms_trashId), QString());
        QCOMPARE(store().getGroup(TaskStorage::ms_trashId).tasks().size(), 1);
    }

    void tickingWhileEditingEndsTheEdit()
    {
        addTasks({u"a"_s});
        key(Qt::Key_Down);
        list().editTask();
        const QList<TaskCheckbox*> boxes = row(0)->findChildren<TaskCheckbox*>();
        QTest::mouseClick(boxes.last(), Qt::LeftButton);
        QVERIFY(!row(0)->isEditing());
        QVERIFY(store().get(list().rows().idAt(0)).completed());
        QVERIFY(row(0)->findChild<TaskCheckbox*>()->isChecked());
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

    void rowColoursTellHowNear_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("overdue") << -3 << QColor(0xF2, 0xC9, 0xC8);
        QTest::newRow("today") << 0 << QColor(0xF2, 0xC9, 0xC8);
        QTest::newRow("tomorrow") << 1 << QColor(0xFF, 0xF2, 0xB9);
        QTest::newRow("in three days") << 3 << QColor(0xFF, 0xF2, 0xB9);
        QTest::newRow("in four days") << 4 << QColor(Qt::white);
        QTest::newRow("never") << 9999 << QColor(Qt::white);
        QTest::newRow("overdue but done") << -30 << QColor(Qt::white);
    }

    void rowColoursTellHowNear()
    {
        QFETCH(int, days);
        QFETCH(QColor, colour);
        addTasks({u"a"_s});
        if (days != 9999)
            store().setTaskDueTime(list().rows().idAt(0), Clock::now().addDays(days));
        if (days == -30)
            store().completeTask(list().rows().idAt(0), true, Clock::now());
        const auto colourOfRow = [this] {
            const QImage image = row(0)->grab().toImage();
            return image.pixelColor(image.width() - 20, image.height() / 2);
        };
        QCOMPARE(colourOfRow(), colour);
        click(0);
        QCOMPARE(colourOfRow(), QColor(0xC6, 0xD0, 0xDA));
    }

    void groupsSwitchTheList()
    {
        FocusGroupListWidget& panel = *m_window->groupList();
        auto& actions = dynamic_singleton<ActionsHelper>::inst();
        addTasks({u"in trash"_s}, TaskStorage::ms_trashId);
        FocusGroupWidget* trash = panel.entries().last();
        QCOMPARE(trash->groupId(), TaskStorage::ms_trashId);
        QTest::mouseClick(trash, Qt::LeftButton);
        QVERIFY(trash->selected() && !panel.entries().first()->selected());
        QCOMPARE(shown(), u"in trash"_s);
        QVERIFY(!actions.newTask()->isEnabled() && !actions.cleanup()->isEnabled());
        QVERIFY(listHasFocus());
        QTest::mouseClick(panel.entries().first(), Qt::LeftButton);
        QCOMPARE(list().rows().count(), 0);
        QVERIFY(actions.newTask()->isEnabled() && actions.cleanup()->isEnabled());
    }

    void clickOnTheCurrentGroupLeavesTheKeysToTheList()
    {
        addTasks({u"a"_s, u"b"_s});
        QTest::mouseClick(m_window->groupList()->entries().first(), Qt::LeftButton);
        QTest::mouseClick(m_window->groupList()->viewport(), Qt::LeftButton, {}, {2, 2});
        QVERIFY(listHasFocus());
        key(Qt::Key_Down);
        QCOMPARE(selected(), u"a"_s);
    }

    void keypadEnterDoesNotSwallowTheNextReturn()
    {
        addTasks({u"a"_s});
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        key(Qt::Key_Enter);
        QVERIFY(!row(0)->isEditing());
        key(Qt::Key_Return);
        QVERIFY(row(0)->isEditing());
    }

    void rowsFollowTheFont()
    {
        addTasks({u"a"_s, u"b"_s});
        click(0);
        list().editTask();
        QFont font = list().font();
        font.setPointSize(font.pointSize() * 2);
        list().setFont(font);
        QCoreApplication::processEvents();
        for (qsizetype i = 0; i < 2; ++i) {
            QCOMPARE(row(i)->height(), list().rows().height(i));
            QCOMPARE(row(i)->height(), row(i)->faceHeight());
        }
        QVERIFY(row(1)->height() >= QFontMetrics(font).height());
    }

    void emptyGroupShowsNoRow()
    {
        for (const auto* widget : list().findChildren<TaskWidget*>())
            QVERIFY(!widget->isVisible());
    }

    void releaseAfterADoubleClickOnEmptySpaceKeepsTheNewRow()
    {
        addTasks({u"a"_s});
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, emptySpace());
        QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, emptySpace());
        QCOMPARE(list().currentIndex(), 1);
        QVERIFY(list().rows().isSelected(1) && row(1)->isEditing());
    }

    void clickBelowTheFormHitsWhatWasPressed()
    {
        addTasks({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, u"h"_s});
        edit(0);
        const QPoint onC = middleOf(2);
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, onC);
        QCOMPARE(selected(), u"c"_s);
        edit(0);
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, onC);
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, onC);
        QCOMPARE(selected(), u"c"_s);
        QVERIFY(row(2)->isEditing());
    }

    void pressThatTakesTheEmptyRowAwayFindsItsOwn()
    {
        addTasks({u"a"_s});
        list().newTask();
        addTasks({u"b"_s});
        QTRY_COMPARE(list().rows().count(), 3);
        click(2);
        QCOMPARE(shown(), u"a,b"_s);
        QCOMPARE(selected(), u"b"_s);
    }

    void untickingWhileEditingGoesOnWithTheEdit()
    {
        addTasks({u"a"_s});
        store().completeTask(list().rows().idAt(0), true, Clock::now());
        click(0);
        list().editTask();
        key(Qt::Key_End);
        QTest::mouseClick(row(0)->findChildren<TaskCheckbox*>().last(), Qt::LeftButton);
        QVERIFY(row(0)->isEditing());
        keys(u"b"_s);
        QCOMPARE(inbox(), u"ab"_s);
    }

    void comingBackToTheWindowGoesOnTyping()
    {
        list().newTask();
        keys(u"half of"_s);
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        keys(u" it"_s);
        QCOMPARE(inbox(), u"half of it"_s);
    }

    /// A body of a height that widgets take for none could not be scrolled.
    void tallestBodyScrolls()
    {
        QVERIFY(TaskRows::maxBodyHeight < QWIDGETSIZE_MAX);
        QScrollArea area;
        area.setWidgetResizable(true);
        auto* body = new QWidget;
        area.setWidget(body);
        area.show();
        body->setMinimumHeight(TaskRows::maxBodyHeight);
        QTRY_VERIFY(area.verticalScrollBar()->maximum() > 16'000'000);
    }

    void groupsStandInTheirOrder()
    {
        const FocusGroup::Id home = store().createGroup(u"Home"_s, {});
        const FocusGroup::Id work = store().createGroup(u"Work"_s, {});
        store().moveGroup(0, work);
        const FocusGroupListWidget panel;
        QList<FocusGroup::Id> shownIds;
        for (const FocusGroupWidget* entry : panel.entries())
            shownIds += entry->groupId();
        QCOMPARE(shownIds, (QList{TaskStorage::ms_inboxId, work, home, TaskStorage::ms_completedId,
                                  TaskStorage::ms_trashId}));
    }

    void viewSwitches()
    {
        QAction* toggle = dynamic_singleton<ActionsHelper>::inst().switchView();
        QVERIFY(m_window->groupList()->isVisible());
        QCOMPARE(toggle->text(), u"Compact"_s);
        m_window->findChild<FancySplitter*>()->setHandlePos(240);
        toggle->trigger();
        QVERIFY(settings().compactView);
        QTRY_COMPARE(toggle->text(), u"Normal"_s);
        QVERIFY(!m_window->groupList()->isVisible());
        QCOMPARE(list().width(), m_window->width() - 1);
        // Switched again before the animation has ended.
        toggle->trigger();
        toggle->trigger();
        toggle->trigger();
        QTRY_COMPARE(toggle->text(), u"Compact"_s);
        QCOMPARE(m_window->groupList()->width(), 240);
        QCOMPARE(list().width(), m_window->width() - 241);
    }

    void placeAndViewOutliveTheWindow()
    {
        QCOMPARE(m_window->size(), QSize(800, 450));
        m_window->setGeometry(30, 40, 700, 500);
        m_window->findChild<FancySplitter*>()->setHandlePos(210);
        dynamic_singleton<ActionsHelper>::inst().switchView()->trigger();
        m_window.reset();
        QCOMPARE(settings().mainWindowFrame, QRect(30, 40, 700, 500));
        QCOMPARE(settings().groupPanelWidth, 210);
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QCOMPARE(m_window->geometry(), QRect(30, 40, 700, 500));
        QVERIFY(!m_window->groupList()->isVisible());
        QCOMPARE(dynamic_singleton<ActionsHelper>::inst().switchView()->text(), u"Normal"_s);
        m_window.reset();
        QCOMPARE(settings().groupPanelWidth, 210);
    }

    void toggleIsAsWideWhateverItReads()
    {
        QAction* toggle = dynamic_singleton<ActionsHelper>::inst().switchView();
        Capitals capitals;
        QCoreApplication::installTranslator(&capitals);
        QTRY_COMPARE(toggle->text(), u"TOGGLE VIEW"_s);
        const QWidget* button =
            m_window->findChild<Toolbar*>()->findChildren<FancyToolBtn*>().last();
        const int width = button->width();
        QVERIFY(width >= button->sizeHint().width());
        for (const QString& text : {u"NORMAL"_s, u"COMPACT"_s}) {
            toggle->trigger();
            QTRY_COMPARE(toggle->text(), text);
            QCOMPARE(button->width(), width);
        }
        QCoreApplication::removeTranslator(&capitals);
    }

    void everythingStaysInReachInANarrowWindow()
    {
        m_window->findChild<FancySplitter*>()->setHandlePos(600);
        m_window->resize(320, 300);
        QVERIFY(list().isVisible() && list().width() >= 100);
        const auto* bar = m_window->findChild<Toolbar*>();
        QTRY_COMPARE(bar->findChildren<FancyToolBtn*>().last()->text(), u"Compact"_s);
        for (const auto* button : bar->findChildren<FancyToolBtn*>()) {
            QVERIFY2(bar->rect().contains(button->geometry()), qPrintable(button->text()));
            QVERIFY2(button->isVisible(), qPrintable(button->text()));
        }
    }

    void panelWidthFromTheFileIsBroughtIntoRange_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("shown");
        QTest::newRow("nothing") << 0 << 100;
        QTest::newRow("negative") << -5 << 100;
        QTest::newRow("too much") << 1215752191 << 800 - 101;
        QTest::newRow("usual") << 190 << 190;
    }

    void panelWidthFromTheFileIsBroughtIntoRange()
    {
        QFETCH(int, stored);
        QFETCH(int, shown);
        m_window.reset();
        settings().mainWindowFrame = QRect();
        settings().groupPanelWidth = stored;
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QCOMPARE(m_window->groupList()->width(), shown);
    }

    void escapeAndClosingHide()
    {
        addTasks({u"a"_s});
        edit(0);
        key(Qt::Key_Escape);
        QVERIFY(m_window->isVisible());
        key(Qt::Key_Escape);
        QVERIFY(!m_window->isVisible());
        m_window->show();
        m_window->close();
        QVERIFY(!m_window->isVisible());
    }

    /// A large group has widgets for the rows in view only, and all of them can be reached.
    void largeGroupHasFewWidgets()
    {
        QList<TodoTask::Id> ids;
        for (int i = 0; i < 20000; ++i) {
            ids.append(store().createTask(TaskStorage::ms_completedId));
            store().renameTask(ids.last(), QString::number(i));
        }
        m_window->groupList()->setCurrentGroup(TaskStorage::ms_completedId);
        QVERIFY(list().findChildren<TaskWidget*>().size() < 60);
        key(Qt::Key_Up);
        QCOMPARE(list().currentIndex(), 19999);
        QCOMPARE(row(19999)->findChild<ElidedLabel*>()->text(), u"19999"_s);
        QVERIFY(list().viewport()->rect().contains(middleOf(19999)));
        QScrollBar* bar = list().verticalScrollBar();
        for (int step = 0; step <= 20; ++step) {
            bar->setValue(bar->maximum() / 20 * step);
            // Wherever the list is scrolled to, rows fill it from top to bottom.
            int covered = 0;
            for (const auto* widget : list().findChildren<TaskWidget*>()) {
                if (widget->isVisible())
                    covered += widget->visibleRegion().boundingRect().height() + 1;
            }
            QVERIFY(covered >= list().viewport()->height() - 2 * TaskRows::margin);
        }
        QVERIFY(list().findChildren<TaskWidget*>().size() < 60);
    }

    void longNamesNeverWidenTheList()
    {
        addTasks({QString(5000, u'W'), u"two\nlines"_s});
        QCOMPARE(list().horizontalScrollBar()->maximum(), 0);
        QCOMPARE(row(0)->findChild<ElidedLabel*>()->text(), QString(5000, u'W'));
        QVERIFY(row(0)->findChild<ElidedLabel*>()->width() < m_window->width());
        QCOMPARE(row(0)->height(), row(1)->height());
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
