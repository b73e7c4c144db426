#include "ui/DragPicture.h"

#include <QPainter>
#include <QWidget>

namespace {
constexpr qsizetype mostShown = 3;
constexpr int gap = 1;
constexpr qreal opacity = 0.8;
} // namespace

QPixmap dragPicture(qsizetype count, const std::function<QWidget*(qsizetype)>& widgetAt)
{
    const qsizetype shown = qMin(count, mostShown);
    QPixmap picture;
    QPainter painter;
    int y = 0;
    for (qsizetype i = 0; i < shown; ++i) {
        QWidget* widget = widgetAt(i);
        const qreal ratio = widget->devicePixelRatioF();
        QPixmap face(widget->size() * ratio);
        face.setDevicePixelRatio(ratio);
        face.fill(Qt::transparent);
        widget->render(&face, {}, {}, QWidget::DrawChildren);
        if (i == 0) {
            const QSize all(widget->width(), widget->height() * static_cast<int>(shown) +
                                                 gap * static_cast<int>(shown - 1));
            picture = QPixmap(all * ratio);
            picture.setDevicePixelRatio(ratio);
            picture.fill(Qt::transparent);
            painter.begin(&picture);
            painter.setOpacity(opacity);
        }
        painter.drawPixmap(0, y, face);
        y += widget->height() + gap;
    }
    painter.end();
    return picture;
}
