#include "ui/controls/LinkLabel.h"

#include <QContextMenuEvent>
#include <QFocusEvent>

LinkLabel::LinkLabel(QWidget* parent)
    : QLabel(parent)
{
}

LinkLabel::LinkLabel(const QString& text, QWidget* parent)
    : QLabel(text, parent)
{
}

void LinkLabel::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
}

// A label takes the focus before its links do, and shows nothing of it: Tab goes on at once.
void LinkLabel::focusInEvent(QFocusEvent* event)
{
    QLabel::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        focusNextPrevChild(event->reason() == Qt::TabFocusReason);
}
