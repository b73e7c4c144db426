#include "ui/controls/FancyToolBtn.h"

#include "ui/controls/StyleHelper.h"

#include <QMouseEvent>
#include <QStyleOptionToolButton>
#include <QStylePainter>

namespace {

/// What the style leaves above, between and below icon and text, together.
constexpr int labelMargins = 6;
constexpr qreal radius = 3;

/// As Space would be, if it is Return.
QKeyEvent asSpace(const QKeyEvent& event)
{
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    return {event.type(), isReturn ? Qt::Key_Space : event.key(), event.modifiers(), event.text(),
            event.isAutoRepeat()};
}

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

void FancyToolBtn::keyPressEvent(QKeyEvent* event)
{
    QKeyEvent key = asSpace(*event);
    QToolButton::keyPressEvent(&key);
    event->setAccepted(key.isAccepted());
}

void FancyToolBtn::keyReleaseEvent(QKeyEvent* event)
{
    QKeyEvent key = asSpace(*event);
    QToolButton::keyReleaseEvent(&key);
    event->setAccepted(key.isAccepted());
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
    // No release reaches a button that was hidden or disabled while it was held.
    m_pressed = false;
    QToolButton::hideEvent(event);
}

void FancyToolBtn::changeEvent(QEvent* event)
{
    if (!isEnabled())
        m_pressed = false;
    QToolButton::changeEvent(event);
}

/// Whether it is drawn as under the pointer, as it is while keys press it. The leave event waits
/// until the mouse button is released; isDown() follows the pointer.
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
    _adaptLabel(option);
    painter.drawControl(QStyle::CE_ToolButtonLabel, option);
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

/// The style draws the label; the rest is the same under any style.
void FancyToolBtn::_adaptLabel(QStyleOptionToolButton& option) const
{
    option.palette.setColor(
        QPalette::ButtonText,
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    option.state &= ~(QStyle::State_Sunken | QStyle::State_MouseOver);
    if (option.toolButtonStyle == Qt::ToolButtonTextUnderIcon && !option.icon.isNull()) {
        // The style puts the icon at the top: it gets no more height than icon and text need.
        const int textHeight = option.fontMetrics.size(Qt::TextShowMnemonic, option.text).height();
        const int height = option.iconSize.height() + textHeight + labelMargins;
        option.rect.setTop((this->height() - height) / 2);
        option.rect.setHeight(height);
    }
    if (isDown())
        option.rect.translate(1, 1);
}
