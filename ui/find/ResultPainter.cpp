#include "ui/find/ResultPainter.h"

#include "ui/controls/DateWidget.h"
#include "ui/controls/OneLine.h"
#include "ui/controls/StyleHelper.h"
#include "ui/find/Command.h"
#include "ui/find/FoundTask.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace {

constexpr int sideMargin = 8;
constexpr int edgeMargin = 5;
constexpr int lineGap = 2;
constexpr int iconSize = 16;
constexpr int gap = 6;
constexpr qreal smallFontScale = 0.9;
constexpr qreal chipRadius = 4;
constexpr int soonDays = 3;

QColor secondaryColor()
{
    return QColor(Qt::darkGray).darker(130);
}

/// A line of text with stretches in bold, cut to the room that it has.
class MarkedLine
{
public:
    MarkedLine(const QString& text, const QList<TaskQuery::Range>& marks, const QFont& font)
    {
        QTextCharFormat bold;
        bold.setFontWeight(QFont::Bold);
        for (const TaskQuery::Range& mark : marks)
            m_formats.append({static_cast<int>(mark.start), static_cast<int>(mark.length), bold});
        m_layout.setFont(font);
        m_layout.setFormats(m_formats);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAnywhere);
        // Which way the text runs is for its script to say, as in editors.
        option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
        option.setAlignment(Qt::AlignAbsolute | Qt::AlignLeft);
        m_layout.setTextOption(option);
        m_layout.setText(text);
    }

    /// Into the area's middle.
    void draw(QPainter& painter, const QRect& area)
    {
        const qsizetype size = m_layout.text().size();
        if (_fitting(area.width()) < size) {
            const int ellipsis = QFontMetrics(m_layout.font()).horizontalAdvance(u'…') + 1;
            const qsizetype cut = _fitting(qMax(0, area.width() - ellipsis));
            m_layout.setText(m_layout.text().left(cut) + u'…');
            m_layout.setFormats(_formatsUpTo(static_cast<int>(cut)));
            _fitting(qMax(area.width(), 2 * ellipsis));
        }
        const QTextLine line = m_layout.lineAt(0);
        m_layout.draw(&painter,
                      QPointF(area.left(), area.top() + (area.height() - line.height()) / 2));
    }

private:
    /// How many units fit.
    qsizetype _fitting(int width)
    {
        m_layout.beginLayout();
        QTextLine line = m_layout.createLine();
        line.setLineWidth(width);
        m_layout.endLayout();
        return line.isValid() ? line.textLength() : 0;
    }

    /// Without the ellipsis, which was measured in the plain font.
    [[nodiscard]] QList<QTextLayout::FormatRange> _formatsUpTo(int cut) const
    {
        QList<QTextLayout::FormatRange> formats = m_formats;
        formats.removeIf([cut](const auto& format) { return format.start >= cut; });
        for (QTextLayout::FormatRange& format : formats)
            format.length = std::min(format.length, cut - format.start);
        return formats;
    }

    QTextLayout m_layout;
    QList<QTextLayout::FormatRange> m_formats;
};

} // namespace

ResultPainter::ResultPainter(const QFont& font)
    : m_font(font)
    , m_smallFont(font)
{
    if (font.pointSizeF() > 0)
        m_smallFont.setPointSizeF(font.pointSizeF() * smallFontScale);
    else
        m_smallFont.setPixelSize(qRound(font.pixelSize() * smallFontScale));
    const int text = QFontMetrics(m_font).height();
    m_commandHeight = std::max(text, iconSize) + 2 * edgeMargin;
    m_taskHeight =
        text + lineGap + std::max(QFontMetrics(m_smallFont).height(), iconSize) + 2 * edgeMargin;
}

void ResultPainter::paintCommand(QPainter& painter, const QRect& area, const Command& command,
                                 const TaskQuery& query) const
{
    QRect line = area.adjusted(sideMargin, 0, -sideMargin, 0);
    const QRect icon(line.left(), line.center().y() - iconSize / 2 + 1, iconSize, iconSize);
    command.icon.paint(&painter, icon, Qt::AlignCenter,
                       command.enabled ? QIcon::Normal : QIcon::Disabled);
    line.setLeft(icon.right() + 1 + gap);

    painter.setFont(m_font);
    painter.setPen(command.enabled ? secondaryColor() : QColor(Qt::gray));
    const int keysWidth = QFontMetrics(m_font).horizontalAdvance(command.keys);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, command.keys);
    line.setRight(line.right() - (keysWidth > 0 ? keysWidth + gap : 0));

    painter.setPen(command.enabled ? QColor(Qt::black) : QColor(Qt::gray));
    const QString text = fancy::onOneLine(command.text);
    MarkedLine(text, query.ranges(text), m_font).draw(painter, line);
}

void ResultPainter::paintTask(QPainter& painter, const QRect& area, const FoundTask& task) const
{
    const QRect inner = area.adjusted(sideMargin, edgeMargin, -sideMargin, -edgeMargin);
    QRect first(inner.topLeft(), QSize(inner.width(), QFontMetrics(m_font).height()));
    QRect second = inner;
    second.setTop(first.bottom() + 1 + lineGap);

    _paintDate(painter, first, task);
    QFont font = m_font;
    font.setStrikeOut(task.completed);
    painter.setPen(task.completed ? secondaryColor() : QColor(Qt::black));
    MarkedLine(task.name, task.nameMatches, font).draw(painter, first);

    _paintGroups(painter, second, task);
    painter.setPen(secondaryColor());
    if (second.width() > 0 && !task.notes.isEmpty())
        MarkedLine(task.notes, task.notesMatches, m_smallFont).draw(painter, second);
}

/// At the right end of the line, which becomes so much shorter; on the colour that the task's row
/// has in the list.
void ResultPainter::_paintDate(QPainter& painter, QRect& line, const FoundTask& task) const
{
    if (!task.due.isValid())
        return;
    const QString text = task.due.toString(DateWidget::fixedDateFormat());
    const int width = QFontMetrics(m_smallFont).horizontalAdvance(text) + 2 * gap;
    const QRect chip(line.right() + 1 - width, line.top(), width, line.height());
    if (!task.completed && task.daysToEvent <= soonDays) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(fancy::color(task.daysToEvent <= 0 ? fancy::DueNow : fancy::DueSoon));
        painter.drawRoundedRect(chip, chipRadius, chipRadius);
    }
    painter.setFont(m_smallFont);
    painter.setPen(task.completed ? secondaryColor() : QColor(Qt::black));
    painter.drawText(chip, Qt::AlignCenter | Qt::TextSingleLine, text);
    line.setRight(chip.left() - 1 - gap);
}

/// From the left; notes get what is left of the line, at least half of it.
void ResultPainter::_paintGroups(QPainter& painter, QRect& line, const FoundTask& task) const
{
    const QFontMetrics metrics(m_smallFont);
    const int end = task.notes.isEmpty() ? line.right() : line.center().x() - gap;
    painter.setFont(m_smallFont);
    painter.setPen(secondaryColor());
    for (const FoundTask::Group& group : task.groups) {
        const int textLeft = line.left() + iconSize + gap / 2;
        if (end - textLeft < 2 * iconSize)
            return;
        group.icon.paint(
            &painter, QRect(line.left(), line.center().y() - iconSize / 2 + 1, iconSize, iconSize));
        const QString name = metrics.elidedText(group.name, Qt::ElideRight, end - textLeft);
        const int width = metrics.horizontalAdvance(name);
        painter.drawText(QRect(textLeft, line.top(), width + 1, line.height()),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, name);
        line.setLeft(textLeft + width + 2 * gap);
    }
}
