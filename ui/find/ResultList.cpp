#include "ui/find/ResultList.h"

#include "ui/controls/FancyScrollbar.h"
#include "ui/controls/StyleHelper.h"
#include "ui/find/ResultAccessible.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
constexpr qreal cornerRadius = 5;
/// About what two screens show.
constexpr int rememberedRows = 200;
} // namespace

ResultList::ResultList(QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_painter(font())
    , m_read(rememberedRows)
{
    installResultAccessible();
    setFrameStyle(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new FancyScrollbar(Qt::Vertical, this));
    QPalette colors = viewport()->palette();
    colors.setColor(QPalette::Window, fancy::color(fancy::White));
    viewport()->setPalette(colors);
    viewport()->setBackgroundRole(QPalette::Window);
}

void ResultList::setResults(const QList<Command>& commands, qsizetype leading,
                            const QList<TodoTask::Id>& tasks, const TaskQuery& query, bool sameText)
{
    m_isChosen = m_isChosen && sameText;
    const Command* current = m_isChosen ? command(m_current) : nullptr;
    const Command wanted = current ? *current : Command();
    const TodoTask::Id wantedTask = m_isChosen ? taskId(m_current) : TodoTask::Id();
    m_commands = commands;
    m_leading = leading;
    m_tasks = tasks;
    m_query = query;
    if (!sameText)
        m_read.clear();
    m_pressed = -1;
    m_current = -1;
    if (current)
        m_current = _placeOf(wanted);
    else if (!wantedTask.isNull() && m_tasks.contains(wantedTask))
        m_current = static_cast<int>(m_leading + m_tasks.indexOf(wantedTask));
    if (m_current < 0) {
        m_isChosen = false;
        m_current = count() > 0 ? 0 : -1;
    }
    _updateScrollBar();
    if (!sameText)
        verticalScrollBar()->setValue(0);
    viewport()->update();
    announceResults(this);
}

int ResultList::_placeOf(const Command& wanted) const
{
    const auto found =
        std::find_if(m_commands.cbegin(), m_commands.cend(), [&wanted](const Command& one) {
            return one.group == wanted.group && (!one.group.isNull() || one.text == wanted.text);
        });
    if (found == m_commands.cend())
        return -1;
    const qsizetype place = found - m_commands.cbegin();
    return static_cast<int>(place < m_leading ? place : place + m_tasks.size());
}

void ResultList::forgetTasks()
{
    m_read.clear();
    viewport()->update();
}

void ResultList::setEmptyText(const QString& text)
{
    if (text == m_emptyText)
        return;
    m_emptyText = text;
    viewport()->update();
}

int ResultList::count() const
{
    return static_cast<int>(m_commands.size() + m_tasks.size());
}

const Command* ResultList::command(int row) const
{
    if (row >= m_leading && row < m_leading + m_tasks.size())
        return nullptr;
    const qsizetype place = row < m_leading ? row : row - m_tasks.size();
    return place >= 0 && place < m_commands.size() ? &m_commands.at(place) : nullptr;
}

TodoTask::Id ResultList::taskId(int row) const
{
    return m_tasks.value(row - m_leading);
}

QString ResultList::spokenRow(int row) const
{
    const Command* one = command(row);
    if (!one)
        return spokenText(_task(row));
    return one->keys.isEmpty() ? one->text : QString(one->text + u", "_s + one->keys);
}

QString ResultList::shownNotes(int row) const
{
    return command(row) ? QString() : _task(row).notes;
}

const FoundTask& ResultList::_task(int row) const
{
    const TodoTask::Id id = taskId(row);
    if (!m_read.contains(id))
        m_read.insert(id, new FoundTask(foundTask(id, m_query)));
    return *m_read.object(id);
}

void ResultList::setCurrentRow(int row)
{
    if (count() == 0)
        return;
    m_isChosen = true;
    m_current = qBound(0, row, count() - 1);
    const QRect place = rowRect(m_current);
    QScrollBar* bar = verticalScrollBar();
    if (place.bottom() >= viewport()->height())
        bar->setValue(bar->value() + place.bottom() + 1 - viewport()->height());
    if (rowRect(m_current).top() < 0)
        bar->setValue(_topOf(m_current));
    viewport()->update();
    announceCurrentResult(this);
}

int ResultList::pageRows() const
{
    return qMax(1, viewport()->height() / m_painter.taskHeight() - 1);
}

int ResultList::contentHeight() const
{
    if (count() == 0)
        return m_emptyText.isEmpty() ? 0 : m_painter.commandHeight();
    return _topOf(count());
}

int ResultList::_topOf(int row) const
{
    const int behindLeading = qMax(0, row - static_cast<int>(m_leading));
    const int tasks = qMin(behindLeading, static_cast<int>(m_tasks.size()));
    return tasks * m_painter.taskHeight() + (row - tasks) * m_painter.commandHeight();
}

/// The last row that begins at or above a height in the contents.
int ResultList::_rowOf(int y) const
{
    const int leading = static_cast<int>(m_leading);
    const int behindTasks = leading + static_cast<int>(m_tasks.size());
    const int tasksTop = _topOf(leading);
    const int restTop = _topOf(behindTasks);
    if (y < tasksTop)
        return y / m_painter.commandHeight();
    return y < restTop ? leading + (y - tasksTop) / m_painter.taskHeight()
                       : behindTasks + (y - restTop) / m_painter.commandHeight();
}

QRect ResultList::rowRect(int row) const
{
    const int top = _topOf(row);
    return {0, top - verticalScrollBar()->value(), viewport()->width(), _topOf(row + 1) - top};
}

int ResultList::rowAt(const QPoint& point) const
{
    const int y = point.y() + verticalScrollBar()->value();
    const int row = y < 0 ? -1 : _rowOf(y);
    return viewport()->rect().contains(point) && row < count() ? row : -1;
}

void ResultList::_updateScrollBar()
{
    QScrollBar* bar = verticalScrollBar();
    bar->setRange(0, qMax(0, contentHeight() - viewport()->height()));
    bar->setPageStep(viewport()->height());
    bar->setSingleStep(m_painter.commandHeight());
}

void ResultList::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    if (count() == 0) {
        painter.setPen(QColor(Qt::darkGray));
        painter.drawText(viewport()->rect(), Qt::AlignCenter, m_emptyText);
        return;
    }
    const int offset = verticalScrollBar()->value();
    const int last = qMin(_rowOf(offset + event->rect().bottom()), count() - 1);
    for (int row = _rowOf(offset + event->rect().top()); row <= last; ++row) {
        const QRect area = rowRect(row);
        if (row == m_current) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(fancy::color(fancy::RowSelected));
            painter.drawRoundedRect(area, cornerRadius, cornerRadius);
        }
        if (const Command* one = command(row))
            m_painter.paintCommand(painter, area, *one, m_query);
        else
            m_painter.paintTask(painter, area, _task(row));
    }
}

void ResultList::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    _updateScrollBar();
}

void ResultList::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->button() == Qt::LeftButton ? rowAt(event->pos()) : -1;
}

void ResultList::mouseReleaseEvent(QMouseEvent* event)
{
    const int row = std::exchange(m_pressed, -1);
    if (event->button() == Qt::LeftButton && row >= 0 && row == rowAt(event->pos()))
        Q_EMIT clicked(row);
}

void ResultList::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange)
        return;
    m_painter = ResultPainter(font());
    _updateScrollBar();
    viewport()->update();
}
