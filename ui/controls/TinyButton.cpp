#include "ui/controls/TinyButton.h"

#include "ui/controls/ButtonAccessible.h"
#include "ui/controls/Outline.h"
#include "ui/controls/StyleHelper.h"

#include <QPainter>

TinyButton::TinyButton(QWidget* parent)
    : QAbstractButton(parent)
{
    installButtonAccessible();
}

void TinyButton::setPixmap(const QPixmap& pixmap)
{
    m_pixmap = pixmap;
    update();
}

QSize TinyButton::sizeHint() const
{
    return {16, 16};
}

void TinyButton::enterEvent(QEnterEvent* event)
{
    Q_UNUSED(event)
}

void TinyButton::leaveEvent(QEvent* event)
{
    Q_UNUSED(event)
}

void TinyButton::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.drawPixmap(3, 3, m_pixmap);
    fancy::drawOutline(painter, rect(), fancy::color(fancy::Frame));
}
