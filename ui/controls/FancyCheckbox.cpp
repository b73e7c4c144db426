#include "ui/controls/FancyCheckbox.h"

#include "ui/controls/ButtonAccessible.h"

#include <QMouseEvent>
#include <QPainter>

namespace {
constexpr QSize boxSize(16, 16);
}

FancyCheckbox::FancyCheckbox(QWidget* parent)
    : QAbstractButton(parent)
{
    installButtonAccessible();
    setCheckable(true);
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(boxSize);
}

void FancyCheckbox::setIconOpacity(double opacity)
{
    if (m_iconOpacity == opacity)
        return;
    m_iconOpacity = opacity;
    update();
}

QSize FancyCheckbox::sizeHint() const
{
    return boxSize;
}

void FancyCheckbox::setIcons(const Icons& icons)
{
    m_icons = icons;
    update();
}

bool FancyCheckbox::hitButton(const QPoint& pos) const
{
    return rect().contains(pos);
}

void FancyCheckbox::checkStateSet()
{
    QAbstractButton::checkStateSet();
    _emitIfChanged();
}

void FancyCheckbox::nextCheckState()
{
    QAbstractButton::nextCheckState();
    _emitIfChanged();
}

/// The base class may call either hook, both or one of them twice for a single change.
void FancyCheckbox::_emitIfChanged()
{
    if (isChecked() == m_checked)
        return;
    m_checked = isChecked();
    Q_EMIT stateChanged(m_checked ? 1 : 0);
}

void FancyCheckbox::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_pressed = true;
    QAbstractButton::mousePressEvent(event);
}

void FancyCheckbox::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_pressed = false;
    QAbstractButton::mouseReleaseEvent(event);
}

void FancyCheckbox::hideEvent(QHideEvent* event)
{
    // No release reaches a box that was hidden while it was held.
    m_pressed = false;
    QAbstractButton::hideEvent(event);
}

FancyCheckbox::EIcon FancyCheckbox::_iconIndex() const
{
    const bool pressed = m_pressed && m_hover;
    if (isChecked())
        return pressed ? CheckedPressed : Checked;
    return pressed ? UncheckedPressed : Unchecked;
}

void FancyCheckbox::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    // The leave event waits until the mouse button is released; isDown() follows the pointer.
    m_hover = m_pressed ? isDown() : underMouse();

    QPainter painter(this);
    if (m_iconOpacity != 1.0)
        painter.setOpacity(m_iconOpacity);
    painter.drawPixmap(0, 0, m_icons.value(_iconIndex()).pixmap(boxSize, devicePixelRatioF()));
}
