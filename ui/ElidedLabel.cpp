#include "ui/ElidedLabel.h"

#include "ui/PlainToolTip.h"
#include "ui/controls/OneLine.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <QtMath>

namespace {
/// More than fits on any screen; what lies beyond need not be measured.
constexpr qsizetype longestLine = 2000;
} // namespace

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setMargin(0);
    setIndent(0);
    setFrameStyle(NoFrame);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, fontMetrics().height()};
}

QSize ElidedLabel::sizeHint() const
{
    // Widths are fractions of pixels: rounded down, the text would not fit into its own hint.
    const qreal width = QFontMetricsF(font()).horizontalAdvance(_line());
    return {qCeil(width) + 1, fontMetrics().height()};
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    if (isElided()) {
        QToolTip::showText(help->globalPos(), plainToolTip(text()), this);
    } else {
        QToolTip::hideText();
    }
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(_line(), Qt::ElideRight, width());
    // Which way the text runs is for its script to say, as in editors.
    const bool leftwards = shown.isRightToLeft();
    const int flags = Qt::AlignVCenter | Qt::TextSingleLine |
                      (leftwards ? Qt::AlignRight | Qt::TextForceRightToLeft
                                 : Qt::AlignLeft | Qt::TextForceLeftToRight);
    style()->drawItemText(&painter, rect(), flags, palette(), isEnabled(), shown, foregroundRole());
}

QString ElidedLabel::_line() const
{
    return fancy::onOneLine(text().left(longestLine));
}
