// A clock for decoration.
#pragma once

#include "app/base/CClock.h"

#include <QPixmap>
#include <QWidget>

/// Its hands sweep round fast, whatever the time is.
class ClockWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ClockWidget(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void _advance();

    QPixmap m_face;
    QPixmap m_hourHand;
    QPixmap m_minuteHand;
    CClock m_clock;
    // Degrees, clockwise from the top.
    double m_hourAngle = 315;
    double m_minuteAngle = 45;
    int m_period = 2000; ///< milliseconds of a turn of the minute hand
    int m_timerId = 0;
};
