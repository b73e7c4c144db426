#include "ui/controls/LinkLabel.h"

#include <QContextMenuEvent>

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
