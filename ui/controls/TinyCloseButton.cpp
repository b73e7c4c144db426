#include "ui/controls/TinyCloseButton.h"

#include <QIcon>
#include <QStyle>

TinyCloseButton::TinyCloseButton(QWidget* parent)
    : TinyButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setPixmap(style()
                  ->standardIcon(QStyle::SP_TitleBarCloseButton)
                  .pixmap(QSize(16, 16), devicePixelRatioF(), QIcon::Normal, QIcon::Off));
}
