#include "ui/controls/EmbossedText.h"

#include <QPainter>

namespace {
constexpr QPointF shadow(0.5, 1);
}

void fancy::drawEmbossedText(QPainter& painter, const QRectF& area, const QString& text,
                             const QColor& color)
{
    painter.setPen(Qt::white);
    painter.drawText(area.translated(shadow), Qt::AlignCenter, text);
    painter.setPen(color);
    painter.drawText(area, Qt::AlignCenter, text);
}
