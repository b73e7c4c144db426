#include "ui/ScrollPanel.h"

#include "ui/controls/FancyScrollbar.h"
#include "ui/controls/StyleHelper.h"

#include <QPaintEvent>
#include <QPainter>

ScrollPanel::ScrollPanel(QWidget* parent)
    : QScrollArea(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setAutoFillBackground(false);
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setVerticalScrollBar(new FancyScrollbar(Qt::Vertical, this));
    setHorizontalScrollBar(new FancyScrollbar(Qt::Horizontal, this));
}

void ScrollPanel::paintEvent(QPaintEvent* event)
{
    QPainter(viewport()).fillRect(event->rect(), fancy::color(fancy::PanelFill));
}
