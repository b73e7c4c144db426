// Frames of one pixel.
#pragma once

class QColor;
class QPainter;
class QRect;

namespace fancy {

/// Draws a line of one logical pixel just inside of the area. It is filled, not stroked: at any
/// scale it is sharp up to its corners and no side of it is clipped away.
void drawOutline(QPainter& painter, const QRect& area, const QColor& color);

} // namespace fancy
