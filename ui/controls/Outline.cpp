#include "ui/controls/Outline.h"

#include <QPainter>

void fancy::drawOutline(QPainter& painter, const QRect& area, const QColor& color)
{
    for (const QRect& edge : QRegion(area) - area.adjusted(1, 1, -1, -1))
        painter.fillRect(edge, color);
}
