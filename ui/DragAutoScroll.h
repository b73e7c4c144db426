// Scrolls a list while something is dragged near its upper or lower edge.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>

class QAbstractScrollArea;

/// Told where the drag is, it scrolls while that is near an edge, the faster the nearer.
class DragAutoScroll : public QObject
{
    Q_OBJECT

public:
    /// Owned by the area.
    explicit DragAutoScroll(QAbstractScrollArea* area);

    /// The drag is at this point of the viewport.
    void follow(const QPoint& point);
    /// The drag left, or ended.
    void stop() { m_timer.stop(); }

Q_SIGNALS:
    /// The list was scrolled under a drag that stands still at `point`.
    void scrolled(const QPoint& point);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] int _step() const;

    QAbstractScrollArea* m_area;
    QBasicTimer m_timer;
    QPoint m_point;
};
