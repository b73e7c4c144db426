#include "ui/controls/FancyToolBtn.h"

#include "ui/controls/StyleHelper.h"

#include <QMouseEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>

namespace {

constexpr int gap = 2;
constexpr qreal radius = 3;

} // namespace

FancyToolBtn::FancyToolBtn(QWidget* parent)
    : QToolButton(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    QColor color = fancy::color(fancy::ButtonText);
    QPalette colors = palette();
    colors.setColor(QPalette::Active, QPalette::Text, color);
    color.setAlphaF(0.4F);
    colors.setColor(QPalette::Disabled, QPalette::Text, color);
    setPalette(colors);
}

void FancyToolBtn::enterEvent(QEnterEvent* event)
{
    QToolButton::enterEvent(event);
    update();
}

void FancyToolBtn::leaveEvent(QEvent* event)
{
    QToolButton::leaveEvent(event);
    update();
}

void FancyToolBtn::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_pressed = true;
    QToolButton::mousePressEvent(event);
    update();
}

void FancyToolBtn::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_pressed = false;
    QToolButton::mouseReleaseEvent(event);
    update();
}

void FancyToolBtn::hideEvent(QHideEvent* event)
{
    // No release reaches a button that was hidden while it was held.
    m_pressed = false;
    QToolButton::hideEvent(event);
}

/// Whether it is drawn as under the pointer. While a mouse button is held the leave event waits
/// for its release; the base class follows the pointer meanwhile. Keys press the button, too.
bool FancyToolBtn::_isHot() const
{
    return isEnabled() && (isDown() || (underMouse() && !m_pressed));
}

void FancyToolBtn::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QStyleOptionToolButton option;
    initStyleOption(&option);
    QStylePainter painter(this);
    _drawFill(painter, option);
    _drawContent(painter, option);
}

void FancyToolBtn::_drawFill(QPainter& painter, const QStyleOptionToolButton& option) const
{
    constexpr QStyle::State keyboardFocus =
        QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    const bool focused = (option.state & keyboardFocus) == keyboardFocus;
    const bool hot = _isHot();
    if (!hot)
        painter.fillRect(rect(), fancy::color(fancy::ButtonFill));
    if (!hot && !focused)
        return;

    // The pen's middle runs half a pixel further in: the line covers whole pixels at any scale.
    const qreal inset = (isDown() ? 2 : 1) + 0.5;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(fancy::color(focused ? fancy::FrameStrong : fancy::Frame));
    painter.setBrush(hot ? QBrush(Qt::white) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.restore();
}

void FancyToolBtn::_drawContent(QStylePainter& painter, const QStyleOptionToolButton& option) const
{
    QRect area = rect();
    if (isDown())
        area.translate(1, 1);
    const bool withIcon = !option.icon.isNull() && option.toolButtonStyle != Qt::ToolButtonTextOnly;
    const bool withText =
        !option.text.isEmpty() && (!withIcon || option.toolButtonStyle != Qt::ToolButtonIconOnly);
    const QSize textSize = option.fontMetrics.size(Qt::TextShowMnemonic, option.text);

    QRect iconRect = area;
    QRect textRect = area;
    if (withIcon && withText && option.toolButtonStyle == Qt::ToolButtonTextUnderIcon) {
        iconRect.setHeight(option.iconSize.height());
        iconRect.translate(0, (area.height() - iconRect.height() - gap - textSize.height()) / 2);
        textRect.setTop(iconRect.bottom() + 1 + gap);
        textRect.setHeight(textSize.height());
    } else if (withIcon && withText) {
        iconRect.setWidth(option.iconSize.width());
        iconRect.translate((area.width() - iconRect.width() - 2 * gap - textSize.width()) / 2, 0);
        textRect.setLeft(iconRect.right() + 1 + 2 * gap);
        textRect.setWidth(textSize.width());
        iconRect = QStyle::visualRect(option.direction, area, iconRect);
        textRect = QStyle::visualRect(option.direction, area, textRect);
    }

    if (withIcon) {
        const QRect aligned =
            QStyle::alignedRect(option.direction, Qt::AlignCenter, option.iconSize, iconRect);
        option.icon.paint(&painter, aligned, Qt::AlignCenter,
                          isEnabled() ? QIcon::Normal : QIcon::Disabled,
                          isChecked() ? QIcon::On : QIcon::Off);
    }
    if (withText)
        _drawText(painter, option, textRect);
}

void FancyToolBtn::_drawText(QStylePainter& painter, const QStyleOptionToolButton& option,
                             const QRect& area) const
{
    int flags = Qt::AlignCenter | Qt::TextShowMnemonic;
    if (style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this) == 0)
        flags |= Qt::TextHideMnemonic;
    // The same in windows that are not active.
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    painter.setFont(font());
    painter.drawItemText(area, flags, option.palette, true, option.text);
}
