#include "ui/CountWidget.h"

#include "ui/controls/EmbossedText.h"

#include <QPainter>

namespace {
constexpr int outerPadding = 5;
constexpr int innerPadding = 3;
constexpr int verticalPadding = 4; // above and below the number together
constexpr qreal cornerRadius = 5;
constexpr qreal penWidth = 2;
} // namespace

CountWidget::CountWidget(int sections, QWidget* parent)
    : QWidget(parent)
    , m_sections(qMax(1, sections))
{
}

bool CountWidget::_exists(int section) const
{
    return section >= 0 && section < m_sections.size();
}

void CountWidget::setSectionValue(int section, int value)
{
    if (!_exists(section))
        return;
    m_sections[section].value = value;
    m_everCounted = m_everCounted || value > 0;
    _findActive();
}

void CountWidget::setSectionColor(int section, const QColor& color)
{
    if (_exists(section))
        m_sections[section].color = color;
}

void CountWidget::setSectionTitleColor(int section, const QColor& color)
{
    if (_exists(section))
        m_sections[section].titleColor = color;
}

int CountWidget::sectionValue(int section) const
{
    return _exists(section) ? m_sections.at(section).value : 0;
}

void CountWidget::_findActive()
{
    m_active.clear();
    for (int section = 0; section < sectionsCount(); ++section) {
        if (m_sections.at(section).value > 0 || m_sections.at(section).showZero)
            m_active += section;
    }
}

int CountWidget::_boxWidth(qsizetype place) const
{
    const int number = m_sections.at(m_active.at(place)).value;
    const bool first = place == 0;
    const bool last = place == m_active.size() - 1;
    return fontMetrics().horizontalAdvance(QString::number(number)) +
           (first ? outerPadding : innerPadding) + (last ? outerPadding : innerPadding);
}

QRect CountWidget::sectionRect(int section) const
{
    int left = 0;
    for (qsizetype place = 0; place < m_active.size(); ++place) {
        const int width = _boxWidth(place);
        if (m_active.at(place) == section)
            return {left, 0, width, height()};
        left += width;
    }
    return {};
}

QSize CountWidget::minimumSizeHint() const
{
    int width = 0;
    for (qsizetype place = 0; place < m_active.size(); ++place)
        width += _boxWidth(place);
    return {width, m_active.isEmpty() ? 0 : fontMetrics().height() + verticalPadding};
}

void CountWidget::paintEvent(QPaintEvent* /*event*/)
{
    if (!m_everCounted)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (qsizetype place = 0; place < m_active.size(); ++place)
        _paintSection(painter, place, sectionRect(m_active.at(place)));
}

/// Only the outer ends of the bar are round.
void CountWidget::_paintSection(QPainter& painter, qsizetype place, const QRect& box) const
{
    const CountSection& section = m_sections.at(m_active.at(place));
    const bool first = place == 0;
    const bool last = place == m_active.size() - 1;
    QRect square = box;
    if (first || last) {
        painter.setPen(QPen(section.color, penWidth));
        painter.setBrush(section.color);
        painter.drawRoundedRect(box.adjusted(1, 1, -1, -1), cornerRadius, cornerRadius);
    }
    if (first)
        square.setLeft(box.left() + box.width() / 2);
    if (last)
        square.setRight(box.left() + box.width() / 2 - 1);
    if (square.isValid())
        painter.fillRect(square, section.color);
    fancy::drawEmbossedText(painter, box, QString::number(section.value), section.titleColor);
}
