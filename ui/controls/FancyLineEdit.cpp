#include "ui/controls/FancyLineEdit.h"

#include <QFocusEvent>

FancyLineEdit::FancyLineEdit(QWidget* parent)
    : QLineEdit(parent)
{
}

FancyLineEdit::FancyLineEdit(const QString& text, QWidget* parent)
    : QLineEdit(text, parent)
{
}

void FancyLineEdit::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    // The context menu gives the focus back before its command runs: "Copy" is meant for what
    // was selected when it opened. And whoever comes back to the window goes on typing: a
    // selection would lose what stands there already.
    const bool comesBack =
        event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason;
    if (m_selectAllOnFocus && !comesBack)
        selectAll();
    // The press that follows clears the selection; its release selects again.
    m_pendingSelect = event->reason() == Qt::MouseFocusReason;
    Q_EMIT gotFocus(true);
}

void FancyLineEdit::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    Q_EMIT gotFocus(false);
}

void FancyLineEdit::mouseReleaseEvent(QMouseEvent* event)
{
    QLineEdit::mouseReleaseEvent(event);
    if (m_selectAllOnFocus && m_pendingSelect && !hasSelectedText())
        selectAll();
    // Also after the first press selected something itself: the next one is an ordinary click.
    m_pendingSelect = false;
}
