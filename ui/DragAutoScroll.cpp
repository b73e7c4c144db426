#include "ui/DragAutoScroll.h"

#include <QAbstractScrollArea>
#include <QScrollBar>

namespace {
constexpr int edge = 24;       // pixels in which it scrolls
constexpr int intervalMs = 20; // between two steps
} // namespace

DragAutoScroll::DragAutoScroll(QAbstractScrollArea* area)
    : QObject(area)
    , m_area(area)
{
}

void DragAutoScroll::follow(const QPoint& point)
{
    m_point = point;
    if (_step() == 0)
        m_timer.stop();
    else if (!m_timer.isActive())
        m_timer.start(intervalMs, this);
}

/// Pixels per interval, negative for upwards.
int DragAutoScroll::_step() const
{
    const int above = edge - m_point.y();
    const int below = m_point.y() - (m_area->viewport()->height() - edge);
    if (above > 0)
        return -above;
    return qMax(below, 0);
}

void DragAutoScroll::timerEvent(QTimerEvent* /*event*/)
{
    QScrollBar* bar = m_area->verticalScrollBar();
    const int before = bar->value();
    bar->setValue(before + _step());
    if (bar->value() != before)
        Q_EMIT scrolled(m_point);
}
