#include "ui/controls/FancySplitterHandle.h"

#include "ui/controls/StyleHelper.h"

#include <QPaintEvent>
#include <QPainter>

FancySplitterHandle::FancySplitterHandle(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent)
{
    setCursor(orientation == Qt::Horizontal ? Qt::SplitHCursor : Qt::SplitVCursor);
}

void FancySplitterHandle::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(),
                     dynamic_singleton<fancy::StyleHelper>::inst().color(fancy::Frame));
}
