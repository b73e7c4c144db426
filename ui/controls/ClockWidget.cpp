#include "ui/controls/ClockWidget.h"

#include <QPainter>
#include <QTimerEvent>

using namespace Qt::StringLiterals;

namespace {
constexpr QSize clockSize(256, 256);
constexpr QPointF pivot(175.5, 179.5);
constexpr int frameMs = 41;
constexpr int hours = 12;
/// Degrees by which the hand is turned in its picture.
constexpr double minuteHandTurn = 2.5;

void drawHand(QPainter& painter, const QPixmap& hand, double angle)
{
    painter.save();
    painter.translate(pivot);
    painter.rotate(angle);
    painter.translate(-pivot);
    painter.drawPixmap(0, 0, hand);
    painter.restore();
}
} // namespace

ClockWidget::ClockWidget(QWidget* parent)
    : QWidget(parent)
    , m_face(u":/about/one_noarrows"_s)
    , m_hourHand(u":/about/arrow_hour"_s)
    , m_minuteHand(u":/about/arrow_minute"_s)
{
    setFixedSize(clockSize);
    m_clock.restart();
    m_timerId = startTimer(frameMs);
}

void ClockWidget::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_timerId)
        update();
    else
        QWidget::timerEvent(event);
}

void ClockWidget::paintEvent(QPaintEvent* /*event*/)
{
    _advance();
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.drawPixmap(0, 0, m_face);
    drawHand(painter, m_hourHand, m_hourAngle);
    drawHand(painter, m_minuteHand, m_minuteAngle - minuteHandTurn);
}

void ClockWidget::_advance()
{
    const auto elapsed = static_cast<double>(m_clock.elapsed());
    if (elapsed <= 0)
        return;
    m_clock.restart();
    m_hourAngle += elapsed * 360 / (m_period * hours);
    m_minuteAngle += elapsed * 360 / m_period;
}
