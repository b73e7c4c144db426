// The splitter's layout and dragging.
#include "ui/controls/FancySplitter.h"
#include "ui/controls/FancySplitterHandle.h"

#include <QTest>
#include <QWindow>

#include <algorithm>

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
        QTest::newRow("left edge") << 0 << hidden << hidden << QRect(1, 0, 299, 50);
        QTest::newRow("inside") << 190 << QRect(0, 0, 190, 50) << QRect(190, 0, 1, 50)
                                << QRect(191, 0, 109, 50);
        QTest::newRow("right edge") << 300 << QRect(0, 0, 300, 50) << hidden << hidden;
    }
    void layout()
    {
        QFETCH(const int, pos);
        m_splitter->setHandlePos(pos);
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
        QTest::newRow("first pane's minimum") << 50 << 80 << -20 << 50;
        QTest::newRow("second pane's minimum") << 50 << 80 << 299 << 220;
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
        QCOMPARE(m_handle->cursor().shape(), Qt::SplitHCursor);
        QWindow* window = m_splitter->windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, {152, 20});
        QTest::mouseMove(window, {100, 20});
        QTest::mouseRelease(window, Qt::LeftButton, {}, {100, 20});
        QCOMPARE(m_splitter->handlePos(), 150);
    }

private:
    std::unique_ptr<FancySplitter> m_splitter;
    QWidget* m_first = nullptr;
    QWidget* m_second = nullptr;
    QWidget* m_handle = nullptr;
};

QTEST_MAIN(TestPanes)
#include "tst_panes.moc"
