#include "ui/controls/FancyScrollbar.h"

#include "ui/controls/StyleHelper.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleOptionSlider>

namespace {
constexpr int thickness = 10;
constexpr int inset = 2;
constexpr qreal radius = 4;

/// Has the thumb run from end to end, where other bars have arrows.
class ArrowlessStyle final : public QProxyStyle
{
public:
    /// Shared by all bars.
    static QStyle* inst()
    {
        static const QPointer<QStyle> style = [] {
            auto* made = new ArrowlessStyle;
            made->setParent(qApp);
            return made;
        }();
        return style;
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override
    {
        const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control != CC_ScrollBar || !bar)
            return QProxyStyle::subControlRect(control, option, part, widget);
        const bool vertical = bar->orientation == Qt::Vertical;
        const int length = vertical ? bar->rect.height() : bar->rect.width();
        const qint64 total = qint64(bar->maximum) - bar->minimum + bar->pageStep;
        const qint64 share = total > 0 ? qint64(bar->pageStep) * length / total : length;
        const int shortest = pixelMetric(PM_ScrollBarSliderMin, option, widget);
        const int thumb = int(qMin<qint64>(length, qMax<qint64>(share, shortest)));
        const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                                  length - thumb, bar->upsideDown);
        const auto piece = [&](int from, int to) {
            const QRect area = vertical ? QRect(0, from, bar->rect.width(), to - from)
                                        : QRect(from, 0, to - from, bar->rect.height());
            return visualRect(bar->direction, bar->rect, area);
        };
        switch (part) {
        case SC_ScrollBarSubPage:
            return piece(0, start);
        case SC_ScrollBarSlider:
            return piece(start, start + thumb);
        case SC_ScrollBarAddPage:
            return piece(start + thumb, length);
        case SC_ScrollBarGroove:
            return piece(0, length);
        default:
            return {};
        }
    }
};
} // namespace

FancyScrollbar::FancyScrollbar(Qt::Orientation orientation, QWidget* parent)
    : QScrollBar(orientation, parent)
{
    setStyle(ArrowlessStyle::inst());
}

void FancyScrollbar::installOn(QAbstractScrollArea* area)
{
    area->setHorizontalScrollBar(new FancyScrollbar(Qt::Horizontal, area));
    area->setVerticalScrollBar(new FancyScrollbar(Qt::Vertical, area));
    auto* corner = new QWidget(area);
    corner->setPalette(QPalette(Qt::white));
    corner->setAutoFillBackground(true);
    area->setCornerWidget(corner);
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
