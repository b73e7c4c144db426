#include "ui/controls/FancyScrollbar.h"

#include "ui/controls/StyleHelper.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace {
constexpr int thickness = 10;
constexpr int inset = 2;
constexpr qreal radius = 4;
} // namespace

FancyScrollbar::FancyScrollbar(Qt::Orientation orientation, QWidget* parent)
    : QScrollBar(orientation, parent)
{
}

QSize FancyScrollbar::sizeHint() const
{
    QSize size = QScrollBar::sizeHint();
    if (orientation() == Qt::Vertical)
        size.setWidth(thickness);
    else
        size.setHeight(thickness);
    return size;
}

void FancyScrollbar::enterEvent(QEnterEvent* event)
{
    QScrollBar::enterEvent(event);
    update();
}

void FancyScrollbar::leaveEvent(QEvent* event)
{
    QScrollBar::leaveEvent(event);
    update();
}

QRect FancyScrollbar::_thumbRect() const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect slider =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    return orientation() == Qt::Vertical ? slider.adjusted(inset, 0, -inset, 0)
                                         : slider.adjusted(0, inset, 0, -inset);
}

void FancyScrollbar::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const auto& palette = dynamic_singleton<fancy::StyleHelper>::inst();
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(underMouse() ? fancy::ThumbHover : fancy::ThumbRest));
    painter.drawRoundedRect(_thumbRect(), radius, radius);
}
