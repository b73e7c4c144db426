#include "ui/controls/MyCalendarMonthWidget.h"

#include "app/base/Clock.h"
#include "ui/controls/AccessibleFactory.h"
#include "ui/controls/EmbossedText.h"
#include "ui/controls/Outline.h"
#include "ui/controls/StyleHelper.h"

#include <QAccessibleWidget>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace {

constexpr int weekDays = 7;
constexpr int rows = 7; // the header and up to six weeks
constexpr int rowGap = 1;

/// The first letter of the weekday's shortest name that has one: some locales number the days.
QString dayLetter(int weekDay)
{
    const QLocale locale = QLocale::system();
    QString name = locale.dayName(weekDay, QLocale::NarrowFormat);
    if (name.isEmpty() || name.at(0).isDigit())
        name = locale.dayName(weekDay, QLocale::ShortFormat);
    return name.left(QTextBoundaryFinder(QTextBoundaryFinder::Grapheme, name).toNextBoundary());
}

void drawText(QPainter& painter, const QRect& cell, const QString& text)
{
    fancy::drawEmbossedText(painter, cell, text, fancy::color(fancy::TextDark).lighter(150));
}

} // namespace

MyCalendarMonthWidget::MyCalendarMonthWidget(const MyCalendarMonthWidgetDelegate* delegate,
                                             QWidget* parent)
    : QWidget(parent)
    , m_delegate(delegate)
{
    // Without a face of its own it would be a plain area.
    installAccessible<MyCalendarMonthWidget, QAccessibleWidget, QAccessible::Grouping>();
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void MyCalendarMonthWidget::setSelectedDate(const QDate& date)
{
    m_selected = date;
    update();
}

QSize MyCalendarMonthWidget::minimumSizeHint() const
{
    const QRect lastCell = _cell(rows - 1, weekDays - 1);
    return {lastCell.right() + 1, lastCell.bottom() + 1};
}

QRect MyCalendarMonthWidget::_cell(int row, int column) const
{
    if (!m_cellSize)
        m_cellSize = fontMetrics().size(Qt::TextSingleLine, u"99"_s) + QSize(10, 2);
    return {QPoint(column * m_cellSize->width(), row * (m_cellSize->height() + rowGap)),
            *m_cellSize};
}

/// The cell of a day of the shown month.
QRect MyCalendarMonthWidget::_cellOf(const QDate& day) const
{
    const int firstColumn = m_selected.addDays(1 - m_selected.day()).dayOfWeek() - 1;
    const int index = firstColumn + day.day() - 1;
    return _cell(1 + index / weekDays, index % weekDays);
}

/// The day of the shown month at a point; null where there is none.
QDate MyCalendarMonthWidget::_dayAt(const QPoint& position) const
{
    if (!m_selected.isValid())
        return {};
    for (int day = 1; day <= m_selected.daysInMonth(); ++day) {
        const QDate date = m_selected.addDays(day - m_selected.day());
        if (_cellOf(date).contains(position))
            return date;
    }
    return {};
}

QColor MyCalendarMonthWidget::_cellColor(const QDate& day) const
{
    return m_delegate ? m_delegate->cellColorForDate(day) : fancy::color(fancy::PanelFill);
}

void MyCalendarMonthWidget::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    _drawHeader(painter);
    if (!m_selected.isValid())
        return;
    const QDate today = Clock::today();
    for (int day = 1; day <= m_selected.daysInMonth(); ++day)
        _drawDay(painter, m_selected.addDays(day - m_selected.day()), today);
}

void MyCalendarMonthWidget::_drawHeader(QPainter& painter) const
{
    for (int column = 0; column < weekDays; ++column)
        drawText(painter, _cell(0, column), dayLetter(column + 1));
}

void MyCalendarMonthWidget::_drawDay(QPainter& painter, const QDate& day, const QDate& today) const
{
    const QRect cell = _cellOf(day);
    if (day == m_hovered) {
        painter.fillRect(cell, _cellColor(day));
        fancy::drawOutline(painter, cell, fancy::color(fancy::TextDark).lighter(250));
    } else if (day == m_selected) {
        painter.fillRect(cell, _cellColor(day));
    } else if (day == today) {
        fancy::drawOutline(painter, cell, Qt::white);
    }
    drawText(painter, cell, QString::number(day.day()));
}

void MyCalendarMonthWidget::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void MyCalendarMonthWidget::mouseReleaseEvent(QMouseEvent* event)
{
    _pick(event);
}

void MyCalendarMonthWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    _pick(event);
}

void MyCalendarMonthWidget::_pick(QMouseEvent* event)
{
    event->accept();
    const QDate day = _dayAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !day.isValid())
        return;
    setSelectedDate(day);
    Q_EMIT dateChanged(day);
}

void MyCalendarMonthWidget::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
    _setHovered(_dayAt(event->position().toPoint()));
}

void MyCalendarMonthWidget::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    _setHovered({});
}

void MyCalendarMonthWidget::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    _setHovered({});
}

void MyCalendarMonthWidget::_setHovered(const QDate& day)
{
    if (std::exchange(m_hovered, day) != day)
        update();
}

void MyCalendarMonthWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        m_cellSize.reset();
        updateGeometry();
    }
}
