#include "ui/controls/FancySplitterHandle.h"

#include "ui/controls/StyleHelper.h"

#include <QPainter>

FancySplitterHandle::FancySplitterHandle(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent)
{
    setCursor(orientation == Qt::Horizontal ? Qt::SplitHCursor : Qt::SplitVCursor);
}

void FancySplitterHandle::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).fillRect(width() / 2, 0, 1, height(), fancy::color(fancy::Frame));
}
