// What a drag looks like.
#pragma once

#include <QPixmap>

#include <functional>

class QWidget;

/// The first of the dragged widgets, stacked and half transparent. `widgetAt` gives the n-th, one
/// at a time; `count`: how many are dragged, at least one.
[[nodiscard]] QPixmap dragPicture(qsizetype count,
                                  const std::function<QWidget*(qsizetype)>& widgetAt);
