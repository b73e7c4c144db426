#include "app/language/LocalizedWidget.h"

#include <QEvent>

LocalizedWidget::LocalizedWidget(QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags)
{
}

void LocalizedWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslateUI();
    QWidget::changeEvent(event);
}
