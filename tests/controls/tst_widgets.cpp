// The self-painted controls: what they show and tell, by mouse, by keys and for screen readers; and
// the colours of what is not self-painted.
#include "ui/controls/ApplicationPalette.h"
#include "ui/controls/FancyScrollbar.h"
#include "ui/controls/FancySplitter.h"
#include "ui/controls/FancyToolBtn.h"
#include "ui/controls/TaskCheckbox.h"
#include "ui/controls/TinyCloseButton.h"

#include <QAccessible>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
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
        box.setChecked(true);
        box.setChecked(true);
        QVERIFY(box.grab().toImage() != unchecked);
        QTest::mouseClick(&box, Qt::LeftButton, {}, {0, 0});
        QTest::mouseClick(&box, Qt::RightButton, {}, {8, 8});
        QTest::mousePress(&box, Qt::LeftButton, {}, {8, 8});
        QTest::mouseRelease(&box, Qt::LeftButton, {}, {16, 8});
        QTest::mouseClick(&box, Qt::LeftButton, {}, {15, 15});
        QCOMPARE(states, (QList<QVariantList>{{1}, {0}, {1}}));
    }

    void accessible()
    {
        TaskCheckbox box;
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&box);
        QCOMPARE(face->role(), QAccessible::CheckBox);
        face->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(box.isChecked() && face->state().checkable && face->state().checked);

        TinyCloseButton button;
        face = QAccessible::queryAccessibleInterface(&button);
        QCOMPARE(face->role(), QAccessible::Button);
        const QSignalSpy clicks(&button, &QAbstractButton::clicked);
        face->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicks.size(), 1);
    }

    void toolButton()
    {
        FancyToolBtn button;
        const QSignalSpy clicks(&button, &QAbstractButton::clicked);
        QTest::keyPress(&button, Qt::Key_Return);
        QVERIFY(button.isDown() && clicks.isEmpty());
        QTest::keyRelease(&button, Qt::Key_Return);
        QCOMPARE(clicks.size(), 1);

        button.setAttribute(Qt::WA_UnderMouse);
        const QImage hot = button.grab().toImage();
        QTest::mousePress(&button, Qt::LeftButton);
        QVERIFY(button.grab().toImage() != hot);
        button.setEnabled(false);
        button.setEnabled(true);
        QCOMPARE(button.grab().toImage(), hot);
    }

    void scrollBarHasNoArrows()
    {
        FancyScrollbar bar(Qt::Vertical);
        bar.setRange(0, 100);
        bar.setPageStep(100);
        bar.resize(10, 200);
        const auto isThumb = [&](int y) {
            return bar.grab().toImage().pixelColor(5, y) != QColor(Qt::white);
        };
        QVERIFY(isThumb(1) && !isThumb(198));
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {5, 198});
        QCOMPARE(bar.value(), 100);
        QVERIFY(!isThumb(1) && isThumb(198));
    }

    void nothingIsDarkOnADarkDesktop()
    {
        using Pair = std::pair<QPalette::ColorRole, QPalette::ColorRole>;
        for (const auto& [ground, text] :
             {Pair(QPalette::Base, QPalette::Text), Pair(QPalette::Window, QPalette::WindowText),
              Pair(QPalette::ToolTipBase, QPalette::ToolTipText)}) {
            QPalette dark;
            dark.setColor(ground, Qt::black);
            dark.setColor(text, Qt::white);
            QApplication::setPalette(dark);
            QApplication::setPalette(dark, "QMenu");
            QToolTip::setPalette(dark);
            fancy::replaceDarkPalette();
            for (const QPalette& colors :
                 {QWidget().palette(), QMenu().palette(), QToolTip::palette()})
                QVERIFY(colors.color(ground).lightness() > 200 && colors.color(text) == Qt::black);
        }
    }

    /// For panes of these minimum widths, a drag from `press` by the left edge to `x` takes the
    /// handle from 150 to `pos`.
    void splitter()
    {
        for (const auto& [firstMinimum, secondMinimum, press, x, pos] :
             {std::array{0, 0, 160, 120, 150},
              {0, 0, 150, 300, 300},
              {50, 80, 150, -20, 50},
              {50, 80, 150, 299, 220},
              {200, 200, 150, 170, 100},
              {100, 400, 150, 170, 0}}) {
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
            QTest::mouseRelease(window, Qt::LeftButton, {}, {x, 20});
            QTest::mouseMove(window, {140, 20});
            QCOMPARE(panes.handlePos(), pos);
            QCOMPARE(first.isVisible(), pos > 0);
            QCOMPARE(second.isVisible(), pos < 300);
            QCOMPARE(second.x(), pos + 1);
        }
    }
};

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
