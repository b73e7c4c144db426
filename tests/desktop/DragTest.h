// Drags in the toolkit's own loop, for tests on a real desktop.
#pragma once

#include "tests/ui/WindowTest.h"
#include "ui/DragHelper.h"

#include <QDrag>
#include <QTimer>

class DragTest : public WindowTest
{
    Q_OBJECT

protected:
    /// Presses at one point of the window, moves to the other and lets go there once `letsGo`
    /// holds, while the drag's own loop runs.
    void drag(
        const QPoint& from, const QPoint& to, Qt::KeyboardModifiers keys = {},
        const std::function<bool()>& letsGo = [] { return true; })
    {
        QWindow* window = m_window->windowHandle();
        int step = 0;
        bool released = false;
        constexpr int steps = 6;
        QTimer walk;
        connect(&walk, &QTimer::timeout, this, [&] {
            if (++step <= steps) {
                QTest::mouseEvent(QTest::MouseMove, window, Qt::NoButton, keys,
                                  from + (to - from) * step / steps);
            } else if (letsGo()) {
                walk.stop();
                released = true;
                QTest::mouseRelease(window, Qt::LeftButton, keys, to);
            }
        });
        QTimer guard;
        connect(&guard, &QTimer::timeout, this, &QDrag::cancel);
        guard.start(10000);
        QTest::mousePress(window, Qt::LeftButton, keys, from);
        walk.start(15);
        // The drag's loop runs inside this: no timer that starts it would tick in there.
        const QPoint far(QApplication::startDragDistance() + 1, 0);
        QTest::mouseEvent(QTest::MouseMove, window, Qt::NoButton, keys, from + far);
        QTRY_VERIFY_WITH_TIMEOUT(released, 15000);
        QTRY_VERIFY(!dynamic_singleton<DragHelper>::inst().dragGroup(0));
    }

    QPoint inWindow(qsizetype number)
    {
        return list().viewport()->mapTo(m_window.get(), middleOf(number));
    }
};
