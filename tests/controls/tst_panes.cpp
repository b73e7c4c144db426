// The splitter's layout and dragging, and the thin scroll bar.
#include "ui/controls/FancyScrollbar.h"
#include "ui/controls/FancySplitter.h"
#include "ui/controls/FancySplitterHandle.h"

#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWindow>

#include <algorithm>

using namespace Qt::StringLiterals;

class TestPanes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_splitter = std::make_unique<FancySplitter>(Qt::Horizontal);
        m_first = new QWidget;
        m_second = new QWidget;
        m_splitter->addWidget(nullptr);
        m_splitter->addWidget(m_first);
        m_splitter->addWidget(m_second);
        m_handle = m_splitter->findChild<FancySplitterHandle*>();
        m_splitter->resize(300, 50);
        m_splitter->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_splitter.get()));
    }

    void cleanupTestCase() { m_splitter.reset(); }

    void layout_data()
    {
        QTest::addColumn<int>("pos");
        QTest::addColumn<QRect>("first");
        QTest::addColumn<QRect>("handle");
        QTest::addColumn<QRect>("second");
        const QRect hidden;
        QTest::newRow("at the left edge") << 0 << hidden << hidden << QRect(1, 0, 299, 50);
        QTest::newRow("one pixel")
            << 1 << QRect(0, 0, 1, 50) << QRect(1, 0, 1, 50) << QRect(2, 0, 298, 50);
        QTest::newRow("inside") << 190 << QRect(0, 0, 190, 50) << QRect(190, 0, 1, 50)
                                << QRect(191, 0, 109, 50);
        QTest::newRow("at the right edge") << 300 << QRect(0, 0, 300, 50) << hidden << hidden;
        QTest::newRow("past it") << 400 << QRect(0, 0, 400, 50) << hidden << hidden;
    }

    void layout()
    {
        QFETCH(const int, pos);
        m_splitter->setHandlePos(pos);
        QCOMPARE(m_splitter->handlePos(), pos);
        const auto shown = [](const QWidget* w) {
            return w->isVisible() ? w->geometry() : QRect();
        };
        QTEST(shown(m_first), "first");
        QTEST(shown(m_handle), "handle");
        QTEST(shown(m_second), "second");
    }

    void drag_data()
    {
        QTest::addColumn<int>("firstMinimum");
        QTest::addColumn<int>("secondMinimum");
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("pos");
        QTest::newRow("free") << 50 << 50 << 120 << 120;
        QTest::newRow("first pane's minimum") << 50 << 80 << 10 << 50;
        QTest::newRow("second pane's minimum") << 50 << 80 << 290 << 220;
        QTest::newRow("past the left edge") << 50 << 80 << -20 << 50;
        QTest::newRow("past the right edge") << 50 << 80 << 299 << 220;
        QTest::newRow("the second pane wins") << 200 << 200 << 170 << 100;
        QTest::newRow("no room for the second") << 100 << 400 << 170 << 0;
        QTest::newRow("closed") << 0 << 0 << 0 << 0;
        QTest::newRow("all open") << 0 << 0 << 300 << 300;
    }

    void drag()
    {
        QFETCH(const int, firstMinimum);
        QFETCH(const int, secondMinimum);
        QFETCH(const int, x);
        m_first->setMinimumWidth(firstMinimum);
        m_second->setMinimumWidth(secondMinimum);
        m_splitter->setHandlePos(150);

        // Through the window, so that the events find their way as they do for a user.
        QWindow* window = m_splitter->windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, {150, 20});
        QTest::mouseMove(window, {x, 20});
        QTEST(m_splitter->handlePos(), "pos");
        // A handle that vanished at an edge is still held.
        QTest::mouseMove(window, {140, 20});
        QCOMPARE(m_splitter->handlePos(),
                 std::max(std::min(std::max(140, firstMinimum), 300 - secondMinimum), 0));
        QTest::mouseRelease(window, Qt::LeftButton, {}, {140, 20});
        const int end = m_splitter->handlePos();
        QTest::mouseMove(window, {170, 20});
        QCOMPARE(m_splitter->handlePos(), end);
        m_first->setMinimumWidth(0);
        m_second->setMinimumWidth(0);
    }

    void pressBesideTheHandle()
    {
        m_splitter->setHandlePos(150);
        QWindow* window = m_splitter->windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, {152, 20});
        QTest::mouseMove(window, {100, 20});
        QTest::mouseRelease(window, Qt::LeftButton, {}, {100, 20});
        QCOMPARE(m_splitter->handlePos(), 150);
    }

    void handle()
    {
        m_splitter->setHandlePos(150);
        QCOMPARE(m_splitter->handleWidth(), 1);
        QCOMPARE(m_handle->cursor().shape(), Qt::SplitHCursor);
        QCOMPARE(FancySplitterHandle(Qt::Vertical).cursor().shape(), Qt::SplitVCursor);
        const QImage image = m_splitter->grab().toImage();
        QCOMPARE(image.pixelColor(150, 0), QColor(0xb0cce4));
        QCOMPARE(image.pixelColor(150, 49), QColor(0xb0cce4));
        QVERIFY(image.pixelColor(151, 20) != QColor(0xb0cce4));
    }

    void thirdPaneAndLostPane()
    {
        FancySplitter splitter(Qt::Horizontal);
        auto* first = new QWidget;
        QWidget third;
        splitter.addWidget(first);
        splitter.addWidget(first);
        splitter.addWidget(new QWidget);
        splitter.addWidget(&third);
        QVERIFY(!third.parentWidget());
        delete first;
        splitter.setHandlePos(10);
    }

    void scrollbar_data()
    {
        QTest::addColumn<Qt::Orientation>("orientation");
        QTest::newRow("vertical") << Qt::Vertical;
        QTest::newRow("horizontal") << Qt::Horizontal;
    }

    void scrollbar()
    {
        QFETCH(const Qt::Orientation, orientation);
        const bool vertical = orientation == Qt::Vertical;
        FancyScrollbar bar(orientation);
        const QSize base = QScrollBar(orientation).sizeHint();
        QCOMPARE(bar.sizeHint(), vertical ? QSize(10, base.height()) : QSize(base.width(), 10));

        bar.setRange(0, 100);
        bar.setPageStep(100);
        bar.resize(vertical ? QSize(10, 200) : QSize(200, 10));
        // One pixel across the bar, in the middle of the thumb.
        const auto across = [&](int offset) {
            QStyleOptionSlider option;
            option.initFrom(&bar);
            option.orientation = orientation;
            option.maximum = 100;
            option.pageStep = 100;
            const QPoint middle = bar.style()
                                      ->subControlRect(QStyle::CC_ScrollBar, &option,
                                                       QStyle::SC_ScrollBarSlider, &bar)
                                      .center();
            return bar.grab().toImage().pixelColor(vertical ? QPoint(offset, middle.y())
                                                            : QPoint(middle.x(), offset));
        };
        const QColor white(Qt::white);
        const QColor rest(0xb0cce4);
        const QColor hover(0x1b75bb);
        QCOMPARE((QList{across(1), across(2), across(7), across(8)}),
                 (QList{white, rest, rest, white}));

        QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
        QCoreApplication::sendEvent(&bar, &enter);
        QCOMPARE((QList{across(1), across(2), across(7), across(8)}),
                 (QList{white, hover, hover, white}));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&bar, &leave);
        QCOMPARE(across(5), rest);
    }

private:
    std::unique_ptr<FancySplitter> m_splitter;
    QWidget* m_first = nullptr;
    QWidget* m_second = nullptr;
    QWidget* m_handle = nullptr;
};

QTEST_MAIN(TestPanes)
#include "tst_panes.moc"
