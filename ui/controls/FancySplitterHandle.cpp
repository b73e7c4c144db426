#include "ui/controls/FancySplitterHandle.h"

#include "ui/controls/StyleHelper.h"

#include <QPainter>

FancySplitterHandle::FancySplitterHandle(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent)
    , m_orientation(orientation)
{
    setCursor(orientation == Qt::Horizontal ? Qt::SplitHCursor : Qt::SplitVCursor);
}

void FancySplitterHandle::paintEvent(QPaintEvent* /*event*/)
{
    const QRect line = m_orientation == Qt::Horizontal ? QRect(width() / 2, 0, 1, height())
                                                       : QRect(0, height() / 2, width(), 1);
    QPainter(this).fillRect(line, fancy::color(fancy::Frame));
}
