#include "ui/TaskRowPanel.h"

#include "ui/DragAutoScroll.h"
#include "ui/DragHelper.h"
#include "ui/TaskWidget.h"
#include "ui/controls/StyleHelper.h"

#include <QDropEvent>
#include <QHash>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace {
constexpr int lineOverhang = 5; // of the insertion line beyond the rows, in pixels
constexpr qreal lineEndRadius = 2.5;

/// The registered drag of tasks that this data stands for; empty for anything else.
boost::shared_ptr<DragGroup> tasksIn(const QMimeData* data)
{
    const auto drag = dynamic_singleton<DragHelper>::inst().dragOf(data);
    return drag && drag->type() == DragGroup::TasksDrag ? drag : nullptr;
}
} // namespace

TaskRowPanel::TaskRowPanel(QWidget* parent)
    : ScrollPanel(parent)
    , m_body(new QWidget)
    , m_autoScroll(new DragAutoScroll(this))
{
    setWidget(m_body);
    // After setWidget(), which turns it on.
    m_body->setAutoFillBackground(false);
    setAcceptDrops(true);
    connect(m_autoScroll, &DragAutoScroll::scrolled, this, &TaskRowPanel::_setDropPosition);
}

TaskWidget* TaskRowPanel::rowWidget(qsizetype row) const
{
    for (const LiveRow& live : m_live) {
        if (live.row == row)
            return live.widget;
    }
    return nullptr;
}

qint64 TaskRowPanel::_shownTop() const
{
    return m_rows.toLogical(verticalScrollBar()->value(), viewport()->height());
}

QRect TaskRowPanel::rowRect(qsizetype row) const
{
    return {TaskRows::margin - horizontalScrollBar()->value(),
            static_cast<int>(m_rows.top(row) - _shownTop()), m_body->width() - 2 * TaskRows::margin,
            m_rows.height(row)};
}

qsizetype TaskRowPanel::rowAt(const QPoint& point) const
{
    const int x = point.x() + horizontalScrollBar()->value();
    if (x < TaskRows::margin || x >= m_body->width() - TaskRows::margin)
        return -1;
    return m_rows.rowAt(logicalY(point.y()));
}

qint64 TaskRowPanel::logicalY(int y) const
{
    return _shownTop() + y;
}

void TaskRowPanel::_layoutRows()
{
    QSize size(0, m_rows.bodyHeight());
    if (m_filler) {
        const int frame = 2 * TaskRows::margin;
        size = size.expandedTo(m_filler->minimumSize() + QSize(frame, frame));
    }
    m_body->setMinimumSize(size);
    // At once, so that the scroll range is right for whoever scrolls next.
    m_body->resize(size.expandedTo(viewport()->size()));
    _syncRows();
    _placeFiller();
}

/// Gives every row in view a widget and takes the others back. Placing a row may scroll the list
/// and so ask for another round, which runs after this one instead of within it.
void TaskRowPanel::_syncRows()
{
    m_syncAgain = true;
    if (m_syncing)
        return;
    const QScopedValueRollback syncing(m_syncing, true);
    while (std::exchange(m_syncAgain, false))
        _syncOnce();
}

void TaskRowPanel::_syncOnce()
{
    QHash<TodoTask::Id, TaskWidget*> known;
    for (const LiveRow& live : std::exchange(m_live, {}))
        known.insert(live.widget->taskId(), live.widget);
    QList<LiveRow> wanted = _wantedRows();
    for (LiveRow& live : wanted)
        live.widget = known.take(m_rows.idAt(live.row));
    _releaseUnwanted(wanted, known.values());
    for (LiveRow& live : wanted) {
        if (!live.widget)
            live.widget = _takeWidget(m_rows.idAt(live.row));
    }
    m_live = wanted;
    _placeRows();
}

QList<TaskRowPanel::LiveRow> TaskRowPanel::_wantedRows() const
{
    const TaskRows::Range range = m_rows.visible(_shownTop(), viewport()->height());
    QList<LiveRow> wanted;
    for (qsizetype row = range.first; row <= range.last; ++row)
        wanted.append({row, nullptr});
    const qsizetype edited = m_rows.edited();
    if (m_rows.isValid(edited) && (edited < range.first || edited > range.last))
        wanted.append({edited, nullptr});
    return wanted;
}

void TaskRowPanel::_releaseUnwanted(QList<LiveRow>& wanted, const QList<TaskWidget*>& left)
{
    for (TaskWidget* widget : left) {
        // A row that the mouse holds on to must not become another one.
        const bool held = widget == m_held || widget->isPressed();
        const qsizetype row = held ? m_rows.indexOf(widget->taskId()) : -1;
        if (row >= 0) {
            wanted.append({row, widget});
        } else {
            widget->hide();
            if (widget != m_held)
                m_spare.append(widget);
        }
    }
}

void TaskRowPanel::_placeRows()
{
    const QPoint shift(horizontalScrollBar()->value(), verticalScrollBar()->value());
    for (const LiveRow& live : std::as_const(m_live)) {
        live.widget->setSelected(m_rows.isSelected(live.row));
        live.widget->setGeometry(rowRect(live.row).translated(shift));
        live.widget->show();
        live.widget->placePopup();
    }
}

void TaskRowPanel::_holdRow(qsizetype row)
{
    TaskWidget* const before = m_held;
    m_held = rowWidget(row);
    const auto isBefore = [before](const LiveRow& live) { return live.widget == before; };
    if (before && before != m_held && std::none_of(m_live.cbegin(), m_live.cend(), isBefore))
        m_spare.append(before);
    _syncRows();
}

void TaskRowPanel::_setFiller(QWidget* filler)
{
    m_filler = filler;
    if (filler) {
        filler->setParent(m_body);
        filler->show();
    }
    _layoutRows();
}

/// The filler stands in the upper two thirds.
void TaskRowPanel::_placeFiller()
{
    if (!m_filler)
        return;
    const QSize room = m_body->size() - QSize(2, 2) * TaskRows::margin;
    const int upper = qMax(m_filler->height(), room.height() * 2 / 3);
    m_filler->move(TaskRows::margin + (room.width() - m_filler->width()) / 2,
                   TaskRows::margin + (upper - m_filler->height()) / 2);
}

TaskWidget* TaskRowPanel::_takeWidget(const TodoTask::Id& id)
{
    TaskWidget* widget = m_spare.isEmpty() ? _createRow(m_body) : m_spare.takeLast();
    widget->setTask(id);
    return widget;
}

TaskWidget* TaskRowPanel::_detachedRow(qsizetype row)
{
    if (m_spare.isEmpty()) {
        m_spare.append(_createRow(m_body));
        m_spare.constLast()->hide();
    }
    TaskWidget* widget = m_spare.constLast();
    widget->setTask(m_rows.idAt(row));
    widget->setSelected(m_rows.isSelected(row));
    widget->resize(rowRect(row).size());
    return widget;
}

void TaskRowPanel::_measureRows()
{
    if (m_spare.isEmpty()) {
        m_spare.append(_createRow(m_body));
        m_spare.constLast()->hide();
    }
    for (TaskWidget* spare : std::as_const(m_spare))
        spare->fixHeight();
    for (const LiveRow& live : std::as_const(m_live))
        live.widget->fixHeight();
    const int height = m_spare.constFirst()->faceHeight();
    m_rows.setRowHeight(height);
    if (const TaskWidget* edited = rowWidget(m_rows.edited()))
        m_rows.setEdited(m_rows.edited(), edited->faceHeight());
    verticalScrollBar()->setSingleStep(height + TaskRows::spacing);
}

void TaskRowPanel::_repaintRows()
{
    m_body->update();
}

void TaskRowPanel::_addToSelection(qsizetype row)
{
    if (!m_rows.isValid(row))
        return;
    m_rows.setCurrent(row);
    m_rows.setSelected(row, true);
    _selectionChanged();
}

void TaskRowPanel::_selectOnly(qsizetype row)
{
    _clearSelection();
    _addToSelection(row);
}

void TaskRowPanel::_selectRange(qsizetype row)
{
    const qsizetype anchor = m_rows.current();
    _clearSelection();
    for (qsizetype i = qMin(anchor, row); i <= qMax(anchor, row); ++i)
        m_rows.setSelected(i, true);
    m_rows.setCurrent(anchor);
    _selectionChanged();
}

void TaskRowPanel::_clearSelection()
{
    m_rows.clearSelection();
    m_rows.setCurrent(-1);
    _selectionChanged();
}

void TaskRowPanel::_selectAll()
{
    for (qsizetype row = 0; row < m_rows.count(); ++row)
        m_rows.setSelected(row, true);
    _selectionChanged();
}

void TaskRowPanel::_moveCurrent(qsizetype row, bool extend)
{
    if (!m_rows.isValid(row))
        return;
    if (extend) {
        m_rows.extendSelection(row);
        _selectionChanged();
    } else {
        _selectOnly(row);
    }
    _makeVisible(row);
}

void TaskRowPanel::_selectionChanged()
{
    for (const LiveRow& live : std::as_const(m_live))
        live.widget->setSelected(m_rows.isValid(live.row) && m_rows.isSelected(live.row));
}

qsizetype TaskRowPanel::_reloadRow(const TodoTask::Id& id)
{
    for (const LiveRow& live : std::as_const(m_live)) {
        if (live.widget->taskId() == id) {
            live.widget->reload();
            return live.row;
        }
    }
    return -1;
}

void TaskRowPanel::_makeVisible(qsizetype row)
{
    const qint64 top = m_rows.top(row);
    _scrollTo(top - TaskRows::margin, top + m_rows.height(row) + TaskRows::margin);
}

void TaskRowPanel::_scrollTo(qint64 top, qint64 bottom)
{
    const int height = viewport()->height();
    const qint64 shown = _shownTop();
    if (top < shown || bottom - top > height)
        verticalScrollBar()->setValue(m_rows.toScroll(top, height));
    else if (bottom > shown + height)
        verticalScrollBar()->setValue(m_rows.toScroll(bottom - height, height));
}

/// Shows by a line where rows dropped at this point of the viewport would go, and scrolls near the
/// edges.
void TaskRowPanel::_setDropPosition(const QPoint& point)
{
    m_autoScroll->follow(point);
    const qint64 y = rowAt(point) < 0 && m_rows.rowAt(logicalY(point.y())) >= 0
                         ? qint64{-1} // beside the rows
                         : logicalY(point.y());
    const TaskRows::DropPosition drop = m_rows.dropPositionAt(y, m_drop);
    if (drop == m_drop)
        return;
    m_drop = drop;
    viewport()->update();
}

/// Takes the line away and returns where it was.
TaskRows::DropPosition TaskRowPanel::_clearDropPosition()
{
    m_autoScroll->stop();
    viewport()->update();
    return std::exchange(m_drop, {});
}

void TaskRowPanel::dragEnterEvent(QDragEnterEvent* event)
{
    dragMoveEvent(event);
}

void TaskRowPanel::dragMoveEvent(QDragMoveEvent* event)
{
    if (!tasksIn(event->mimeData())) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    _setDropPosition(event->position().toPoint());
}

void TaskRowPanel::dragLeaveEvent(QDragLeaveEvent* /*event*/)
{
    _clearDropPosition();
}

void TaskRowPanel::dropEvent(QDropEvent* event)
{
    const TaskRows::DropPosition drop = _clearDropPosition();
    const boost::shared_ptr<DragGroup> drag = tasksIn(event->mimeData());
    if (!drag || !m_rows.isValid(drop.row)) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    _reorderSelected(*drag, drop);
}

void TaskRowPanel::paintEvent(QPaintEvent* event)
{
    ScrollPanel::paintEvent(event);
    if (!m_rows.isValid(m_drop.row))
        return;
    // In the gap between two rows, which the rows do not paint over.
    const QRect row = rowRect(m_drop.row);
    const int y = m_drop.before ? row.top() - TaskRows::spacing : row.top() + row.height();
    const QRect line(row.left() - lineOverhang, y, row.width() + 2 * lineOverhang, 1);
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fancy::color(fancy::FrameStrong));
    painter.drawRect(line);
    for (const int x : {line.left(), line.left() + line.width()})
        painter.drawEllipse(QPointF(x, y + 0.5), lineEndRadius, lineEndRadius);
}

void TaskRowPanel::resizeEvent(QResizeEvent* event)
{
    ScrollPanel::resizeEvent(event);
    _layoutRows();
}

void TaskRowPanel::scrollContentsBy(int dx, int dy)
{
    ScrollPanel::scrollContentsBy(dx, dy);
    _syncRows();
}

/// Without the scroll area's own scrolling to the next field: the form shows its fields itself.
bool TaskRowPanel::focusNextPrevChild(bool next)
{
    return QAbstractScrollArea::focusNextPrevChild(next);
}

void TaskRowPanel::changeEvent(QEvent* event)
{
    ScrollPanel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        _measureRows();
        _layoutRows();
    }
}
