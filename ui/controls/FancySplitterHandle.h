// The line between the panes of a FancySplitter.
#pragma once

#include <QWidget>

/// Wider than the line it shows in its middle, so that it can be gripped; it lies over the panes.
/// Only looks: the splitter handles the mouse.
class FancySplitterHandle : public QWidget
{
    Q_OBJECT

public:
    explicit FancySplitterHandle(Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::Orientation m_orientation;
};
