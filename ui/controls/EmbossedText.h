// Text that looks pressed into what it stands on.
#pragma once

class QColor;
class QPainter;
class QRectF;
class QString;

namespace fancy {

/// Draws the text, centred in the area, with a white shadow below and to the right of it.
void drawEmbossedText(QPainter& painter, const QRectF& area, const QString& text,
                      const QColor& color);

} // namespace fancy
