#include "ui/controls/CTagsEdit.h"

#include <QEvent>

CTagsEdit::CTagsEdit(const QString& text, QWidget* parent)
    : HintedEditT<QLineEdit>(text, tr("Tags"), parent)
{
    setFrame(false);
}

void CTagsEdit::changeEvent(QEvent* event)
{
    HintedEditT<QLineEdit>::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        setHintText(tr("Tags"));
}
