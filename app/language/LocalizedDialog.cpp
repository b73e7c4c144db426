#include "app/language/LocalizedDialog.h"

#include <QEvent>

LocalizedDialog::LocalizedDialog(QWidget* parent, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
}

void LocalizedDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslateUI();
    QDialog::changeEvent(event);
}
