#include "ui/controls/NotesTextEdit.h"

#include "ui/controls/StyleHelper.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>

namespace {

constexpr int minimumLines = 2;
constexpr int textMargins = 8;
/// So that the text begins where that of the line edits above and below does.
constexpr int lineEditMargin = 2;
/// Far below the limit of a widget's height, so that forms and lists can add to it.
constexpr int heightLimit = 1'000'000;

} // namespace

NotesTextEdit::NotesTextEdit(const QString& text, const QString& hintText, QWidget* parent)
    : HintedEditT<QTextEdit>(text, hintText, parent)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    setFocusPolicy(Qt::StrongFocus); // not by the wheel that scrolls what it is part of
    setAcceptRichText(false);
    document()->setDocumentMargin(lineEditMargin);
    setWordWrapMode(QTextOption::WordWrap);
    setBaseColor(fancy::color(fancy::RowEdited));
    connect(this, &QTextEdit::textChanged, this, &NotesTextEdit::_countLines);
    _countLines();
}

void NotesTextEdit::_countLines()
{
    int lines = document()->blockCount();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
        lines += int(block.text().count(QChar::LineSeparator));
    if (std::exchange(m_lines, lines) != lines)
        updateGeometry();
}

QSize NotesTextEdit::minimumSizeHint() const
{
    const qint64 height =
        qint64(qMax(minimumLines, m_lines)) * fontMetrics().lineSpacing() + textMargins;
    return {QAbstractScrollArea::minimumSizeHint().width(), int(qMin<qint64>(height, heightLimit))};
}

void NotesTextEdit::focusInEvent(QFocusEvent* event)
{
    HintedEditT<QTextEdit>::focusInEvent(event);
    Q_EMIT gotFocus(true);
}

void NotesTextEdit::focusOutEvent(QFocusEvent* event)
{
    HintedEditT<QTextEdit>::focusOutEvent(event);
    Q_EMIT gotFocus(false);
}

void NotesTextEdit::resizeEvent(QResizeEvent* event)
{
    HintedEditT<QTextEdit>::resizeEvent(event);
    // Notes with wrapped lines are taller than the field: unless somebody is at it, it shows the
    // beginning.
    if (!hasFocus())
        verticalScrollBar()->setValue(0);
}

void NotesTextEdit::timerEvent(QTimerEvent* event)
{
    // A drag of the selection swallows the release of the button. The editor would go on scrolling
    // and, as if the button were down, start the next drag.
    if (!(QGuiApplication::mouseButtons() & Qt::LeftButton)) {
        const QPoint outside(-1, -1);
        QMouseEvent release(QEvent::MouseButtonRelease, outside, mapToGlobal(outside),
                            Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        mouseReleaseEvent(&release);
    }
    HintedEditT<QTextEdit>::timerEvent(event);
}
