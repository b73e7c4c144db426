// Two panes with a movable line between them.
#pragma once

#include <QPointer>
#include <QWidget>

class FancySplitterHandle;

/// Shows its first pane left of the handle and its second right of it. A pane without room is
/// hidden. Only the horizontal orientation lays its panes out.
class FancySplitter : public QWidget
{
    Q_OBJECT

public:
    explicit FancySplitter(Qt::Orientation orientation, QWidget* parent = nullptr);

    /// Takes the first, then the second pane, and owns it; null and any further one is ignored.
    void addWidget(QWidget* widget);

    /// Width of the first pane in pixels; 0 hides it.
    [[nodiscard]] int handlePos() const;
    /// Moves the handle, without regard to the panes' minimum widths.
    void setHandlePos(int pos);
    [[nodiscard]] int handleWidth() const;

    /// Does nothing: the first pane keeps its width, the second takes the rest.
    void setStretchFactor(int index, int stretch);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void _update();
    /// The handle position for the pointer at `x`, kept where the panes have their minimum width.
    [[nodiscard]] int _draggedPos(int x) const;

    Qt::Orientation m_orientation;
    QPointer<QWidget> m_first;
    QPointer<QWidget> m_second;
    FancySplitterHandle* m_handle;
    int m_handlePos = 0;
    bool m_dragging = false;
    int m_gripped = 0; // how far beside the handle
};
