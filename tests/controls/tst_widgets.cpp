// The self-painted buttons show their state, tell each change of it once, and can be found and
// pressed by a screen reader; the splitter follows the mouse within the panes' minimum widths.
#include "ui/controls/FancySplitter.h"
#include "ui/controls/TaskCheckbox.h"
#include "ui/controls/TinyCloseButton.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

class TestWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkbox()
    {
        TaskCheckbox box;
        const QImage unchecked = box.grab().toImage();
        QSignalSpy states(&box, &FancyCheckbox::stateChanged);
        using States = QList<QVariantList>;
        box.setChecked(true);
        box.setChecked(true);
        QCOMPARE(states, (States{{1}}));
        QVERIFY(box.grab().toImage() != unchecked);
        QTest::mouseClick(&box, Qt::LeftButton, {}, {0, 0});
        QTest::mouseClick(&box, Qt::LeftButton, {}, {15, 15});
        QCOMPARE(states, (States{{1}, {0}, {1}}));
        QTest::mouseClick(&box, Qt::RightButton, {}, {8, 8});
        QTest::mousePress(&box, Qt::LeftButton, {}, {8, 8});
        QTest::mouseRelease(&box, Qt::LeftButton, {}, {16, 8});
        QCOMPARE(states.size(), 3);
    }

    void accessible()
    {
        TaskCheckbox box;
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&box);
        QCOMPARE(face->role(), QAccessible::CheckBox);
        QVERIFY(face->state().checkable && !face->state().checked);
        face->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(box.isChecked() && face->state().checked);

        TinyCloseButton button;
        face = QAccessible::queryAccessibleInterface(&button);
        QCOMPARE(face->role(), QAccessible::Button);
        QSignalSpy clicks(&button, &QAbstractButton::clicked);
        face->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicks.size(), 1);
    }

    void splitter_data()
    {
        QTest::addColumn<int>("firstMinimum");
        QTest::addColumn<int>("secondMinimum");
        QTest::addColumn<int>("press");
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("pos");
        QTest::newRow("free") << 0 << 0 << 150 << 120 << 120;
        QTest::newRow("beside the handle") << 0 << 0 << 160 << 120 << 150;
        QTest::newRow("first pane's minimum") << 50 << 80 << 150 << -20 << 50;
        QTest::newRow("second pane's minimum") << 50 << 80 << 150 << 299 << 220;
        QTest::newRow("the second pane wins") << 200 << 200 << 150 << 170 << 100;
        QTest::newRow("no room for the second") << 100 << 400 << 150 << 170 << 0;
        QTest::newRow("closed") << 0 << 0 << 150 << 0 << 0;
        QTest::newRow("all open") << 0 << 0 << 150 << 300 << 300;
    }
    void splitter()
    {
        QFETCH(const int, firstMinimum);
        QFETCH(const int, secondMinimum);
        QFETCH(const int, press);
        QFETCH(const int, x);
        QFETCH(const int, pos);
        FancySplitter panes(Qt::Horizontal);
        QWidget first;
        QWidget second;
        first.setMinimumWidth(firstMinimum);
        second.setMinimumWidth(secondMinimum);
        panes.addWidget(&first);
        panes.addWidget(&second);
        panes.resize(300, 50);
        panes.setHandlePos(150);
        panes.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panes));

        // Through the window, so that the events find their way as they do for a user.
        QWindow* window = panes.windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, {press, 20});
        // A handle that vanishes at an edge is still held.
        QTest::mouseMove(window, {0, 20});
        QTest::mouseMove(window, {x, 20});
        QCOMPARE(panes.handlePos(), pos);
        QCOMPARE(first.isVisible(), pos > 0);
        QCOMPARE(second.isVisible(), pos < 300);
        QCOMPARE(second.x(), pos + 1);
        QTest::mouseRelease(window, Qt::LeftButton, {}, {x, 20});
        QTest::mouseMove(window, {140, 20});
        QCOMPARE(panes.handlePos(), pos);
    }
};

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
