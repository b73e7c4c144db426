#include "ui/TaskListWidget.h"

#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "ui/ActionsHelper.h"
#include "ui/TaskWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include <utility>

namespace {

bool extends(const QInputEvent* event)
{
    return (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
}

} // namespace

TaskListWidget::TaskListWidget(const FocusGroup::Id& groupId, QWidget* parent)
    : ScrollPanel(parent)
    , m_groupId(groupId)
    , m_body(new QWidget)
{
    setAccessibleName(tr("Tasks"));
    setWidget(m_body);
    // After setWidget(), which turns it on.
    m_body->setAutoFillBackground(false);

    connect(&taskStorage(), &TaskStorage::taskChanged, this, &TaskListWidget::_onTaskChanged);
    connect(&taskStorage(), &TaskStorage::groupChanged, this, &TaskListWidget::_onGroupChanged);
    m_group = taskStorage().getGroup(groupId);
    _measureRows();
    _loadTasks();
}

TaskListWidget::~TaskListWidget()
{
    // A new task that is still empty goes the way it goes when its editing ends otherwise.
    _stopEditing(m_edited, false);
}

void TaskListWidget::setGroup(const FocusGroup::Id& id)
{
    if (id == m_groupId)
        return;
    _stopEditing(m_edited, false);
    _clear();
    m_groupId = id;
    m_group = taskStorage().getGroup(id);
    _loadTasks();
    verticalScrollBar()->setValue(0);
}

void TaskListWidget::refresh()
{
    if (m_groupId.isNull())
        return;
    const int vertical = verticalScrollBar()->value();
    const FocusGroup::Id id = m_groupId;
    _stopEditing(m_edited, false);
    _clear();
    m_groupId = id;
    m_group = taskStorage().getGroup(id);
    _loadTasks();
    verticalScrollBar()->setValue(vertical);
}

void TaskListWidget::updateGroup()
{
    m_group = taskStorage().getGroup(m_groupId);
}

void TaskListWidget::_clear()
{
    m_group = FocusGroup();
    m_groupId = {};
    m_rows.clear();
    m_current = -1;
    m_edited = nullptr;
    _layoutRows();
    _selectionChanged();
}

void TaskListWidget::_loadTasks()
{
    if (m_groupId.isNull())
        return;
    m_rows.assign(m_group.tasks().toList());
    _layoutRows();
    _selectionChanged();
}

void TaskListWidget::_addTask(const TodoTask::Id& id, bool edit)
{
    if (id.isNull())
        return;
    m_rows.append(id);
    _layoutRows();
    if (edit)
        _startEditing(m_rows.count() - 1);
}

void TaskListWidget::newTask()
{
    if (m_groupId.isNull())
        return;
    _startEditing(-1);
    const TodoTask::Id id = taskStorage().createTask(m_groupId);
    m_group._add(id);
    _addTask(id, true);
    m_rows.setNew(m_rows.count() - 1, true);
    _makeVisible(m_rows.count() - 1);
}

void TaskListWidget::editTask()
{
    if (m_rows.isValid(m_current))
        _startEditing(m_current);
}

void TaskListWidget::cleanup()
{
    if (m_rows.count() == 0)
        return;
    _stopEditing(m_edited, false);
    const TodoTask::Id currentId =
        m_rows.isValid(m_current) ? m_rows.idAt(m_current) : TodoTask::Id();
    m_rows.removeIf([this](qsizetype row) {
        const TodoTask::Id id = m_rows.idAt(row);
        const TodoTask task = taskStorage().get(id);
        if (task.completed())
            m_group.move(id, TaskStorage::ms_completedId);
        else if (task.empty())
            m_group.remove(id, false);
        else
            return false;
        return true;
    });
    m_current = currentId.isNull() ? -1 : m_rows.indexOf(currentId);
    _layoutRows();
    _selectionChanged();
}

void TaskListWidget::deleteTasks()
{
    if (m_rows.selectedCount() == 0)
        return;
    for (qsizetype row = 0; row < m_rows.count(); ++row) {
        if (m_rows.isSelected(row))
            m_group.remove(m_rows.idAt(row), false);
    }
    m_rows.removeIf([this](qsizetype row) { return m_rows.isSelected(row); });
    _clearSelection();
    _layoutRows();
}

void TaskListWidget::_startEditing(qsizetype row)
{
    if (row == -1) {
        _stopEditing(m_edited, false);
        return;
    }
    if (!m_rows.isValid(row) || row == m_rows.edited())
        return;
    const TodoTask::Id id = m_rows.idAt(row);
    if (m_edited) {
        // Ending the other edit may take its row away.
        _stopEditing(m_edited, false);
        row = m_rows.indexOf(id);
    }
    _selectOnly(row);
    // The edited row has a widget wherever it lies.
    m_rows.setEdited(row, m_rows.height(row));
    _syncRows();
    m_edited = rowWidget(row);
    m_edited->setEditing(true, false, false);
    m_rows.setEdited(row, m_edited->faceHeight());
    _layoutRows();
    _makeVisible(row);
}

void TaskListWidget::_stopEditing(TaskWidget* row, bool byReturn)
{
    if (!m_edited || row != m_edited)
        return;
    const qsizetype index = m_rows.edited();
    const bool hadFocus = m_edited->isAncestorOf(focusWidget());
    m_edited->setEditing(false, false, false);
    m_edited = nullptr;
    m_rows.setEdited(-1, 0);
    m_endedByReturn = byReturn;
    if (m_rows.isValid(index) && m_rows.isNew(index)) {
        m_rows.setNew(index, false);
        const TodoTask::Id id = m_rows.idAt(index);
        if (taskStorage().get(id).empty()) {
            m_group.remove(id, true);
            _clearSelection();
            m_rows.removeAt(index);
        }
    }
    _layoutRows();
    if (hadFocus)
        setFocus(Qt::OtherFocusReason);
}

void TaskListWidget::_addToSelection(qsizetype row)
{
    if (!m_rows.isValid(row))
        return;
    m_current = row;
    m_rows.setSelected(row, true);
    _selectionChanged();
}

void TaskListWidget::_selectOnly(qsizetype row)
{
    _clearSelection();
    _addToSelection(row);
}

/// Selects from the current row, the anchor, to `row`; the anchor stays current.
void TaskListWidget::_selectRange(qsizetype row)
{
    const qsizetype anchor = m_current;
    _clearSelection();
    for (qsizetype i = qMin(anchor, row); i <= qMax(anchor, row); ++i)
        m_rows.setSelected(i, true);
    m_current = anchor;
    _selectionChanged();
}

void TaskListWidget::_clearSelection()
{
    m_rows.clearSelection();
    m_current = -1;
    _selectionChanged();
}

void TaskListWidget::_selectionChanged()
{
    for (const LiveRow& live : std::as_const(m_live))
        live.widget->setSelected(m_rows.isValid(live.row) && m_rows.isSelected(live.row));
    dynamic_singleton<ActionsHelper>::inst().editTask()->setEnabled(m_current >= 0);
}

void TaskListWidget::_selectAll()
{
    for (qsizetype row = 0; row < m_rows.count(); ++row)
        m_rows.setSelected(row, true);
    _selectionChanged();
}

void TaskListWidget::_selectNeighbour(qsizetype row, bool extend)
{
    if (!m_rows.isValid(row))
        return;
    if (!extend)
        _clearSelection();
    _addToSelection(row);
    _makeVisible(row);
}

qsizetype TaskListWidget::_findWidgetByPos(const QPoint& point) const
{
    if (point.x() < TaskRows::margin || point.x() >= viewport()->width() - TaskRows::margin)
        return -1;
    const int height = viewport()->height();
    return m_rows.rowAt(m_rows.toLogical(verticalScrollBar()->value(), height) + point.y());
}

void TaskListWidget::_makeVisible(qsizetype row)
{
    const int height = viewport()->height();
    QScrollBar* bar = verticalScrollBar();
    const qint64 shown = m_rows.toLogical(bar->value(), height);
    const qint64 top = m_rows.top(row) - TaskRows::margin;
    const qint64 bottom = m_rows.top(row) + m_rows.height(row) + TaskRows::margin;
    if (top < shown)
        bar->setValue(m_rows.toScroll(top, height));
    else if (bottom > shown + height)
        bar->setValue(m_rows.toScroll(bottom - height, height));
}

void TaskListWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const qsizetype pressed = _findWidgetByPos(event->position().toPoint());
    const TodoTask::Id id = pressed >= 0 ? m_rows.idAt(pressed) : TodoTask::Id();
    _startEditing(-1);
    // Ending the edit may have taken a row away.
    const qsizetype row =
        m_rows.isValid(pressed) && m_rows.idAt(pressed) == id ? pressed : m_rows.indexOf(id);
    if (!extends(event) && (row < 0 || !m_rows.isSelected(row)))
        _clearSelection();
    if (row < 0)
        return;
    if ((event->modifiers() & Qt::ShiftModifier) && m_rows.isValid(m_current))
        _selectRange(row);
    else
        _addToSelection(row);
}

void TaskListWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const qsizetype row = _findWidgetByPos(event->position().toPoint());
    if (!extends(event) && row >= 0)
        _selectOnly(row);
}

void TaskListWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    _clearSelection();
    const qsizetype row = _findWidgetByPos(event->position().toPoint());
    if (row < 0)
        newTask();
    else
        _startEditing(row);
}

void TaskListWidget::keyPressEvent(QKeyEvent* event)
{
    const bool shift = (event->modifiers() & Qt::ShiftModifier) != 0;
    if (event->matches(QKeySequence::SelectAll)) {
        _selectAll();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Down:
        if (!m_edited)
            _selectNeighbour(m_current + 1, shift);
        break;
    case Qt::Key_Up:
        if (!m_edited)
            _selectNeighbour((m_current < 0 ? m_rows.count() : m_current) - 1, shift);
        break;
    case Qt::Key_Return:
        if (!m_edited && !m_endedByReturn && m_rows.isValid(m_current)) {
            if (shift)
                newTask();
            else
                _startEditing(m_current);
        }
        m_endedByReturn = false;
        break;
    case Qt::Key_Enter:
        // It ends editing in the name field as Return does, but starts nothing here.
        m_endedByReturn = false;
        ScrollPanel::keyPressEvent(event);
        break;
    case Qt::Key_Escape:
        if (m_edited)
            _stopEditing(m_edited, false);
        else
            ScrollPanel::keyPressEvent(event);
        break;
    case Qt::Key_Delete:
        if (!m_edited)
            deleteTasks();
        break;
    default:
        ScrollPanel::keyPressEvent(event);
    }
}

void TaskListWidget::_onTaskChanged(const TodoTask::Id& id)
{
    for (const LiveRow& live : std::as_const(m_live)) {
        if (live.widget->taskId() == id)
            live.widget->reload();
    }
}

void TaskListWidget::_onGroupChanged(const FocusGroup::Id& id)
{
    if (id != m_groupId || m_followPending)
        return;
    // Bulk changes tell of every single task: look once, when they are done.
    m_followPending = true;
    QMetaObject::invokeMethod(this, &TaskListWidget::_followStore, Qt::QueuedConnection);
}

/// Shows the tasks that the group holds now, where this list's own steps did not already.
void TaskListWidget::_followStore()
{
    m_followPending = false;
    m_group = taskStorage().getGroup(m_groupId);
    const QList<TodoTask::Id> ids = m_group.tasks().toList();
    if (m_rows.matches(ids))
        return;
    const TodoTask::Id current =
        m_rows.isValid(m_current) ? m_rows.idAt(m_current) : TodoTask::Id();
    m_rows.assign(ids);
    if (m_edited && m_rows.edited() < 0) {
        m_edited->setEditing(false, false, false);
        m_edited = nullptr;
    }
    m_current = current.isNull() ? -1 : m_rows.indexOf(current);
    _layoutRows();
    _selectionChanged();
}

void TaskListWidget::_layoutRows()
{
    const int height = m_rows.bodyHeight();
    m_body->setMinimumHeight(height);
    // At once, so that the scroll range is right for whoever scrolls next.
    m_body->resize(viewport()->width(), qMax(height, viewport()->height()));
    _syncRows();
}

/// Gives every row in view a widget and takes the others back.
void TaskListWidget::_syncRows()
{
    const int height = viewport()->height();
    const qint64 top = m_rows.toLogical(verticalScrollBar()->value(), height);
    const TaskRows::Range range = m_rows.visible(top, height);

    QList<LiveRow> old = std::exchange(m_live, {});
    QList<LiveRow> wanted;
    for (qsizetype row = range.first; row <= range.last; ++row)
        wanted.append({row, nullptr});
    const qsizetype edited = m_rows.edited();
    if (m_rows.isValid(edited) && (edited < range.first || edited > range.last))
        wanted.append({edited, nullptr});

    QHash<TodoTask::Id, TaskWidget*> known;
    for (const LiveRow& live : std::as_const(old))
        known.insert(live.widget->taskId(), live.widget);
    for (LiveRow& live : wanted)
        live.widget = known.take(m_rows.idAt(live.row));
    for (TaskWidget* widget : std::as_const(known)) {
        // A row that the mouse holds on to must not become another one.
        const qsizetype row = widget->isPressed() ? m_rows.indexOf(widget->taskId()) : -1;
        if (row >= 0) {
            wanted.append({row, widget});
        } else {
            widget->hide();
            m_spare.append(widget);
        }
    }
    for (LiveRow& live : wanted) {
        if (!live.widget)
            live.widget = _takeWidget(m_rows.idAt(live.row));
    }
    m_live = wanted;
    _placeRows();
}

void TaskListWidget::_placeRows()
{
    const int scroll = verticalScrollBar()->value();
    const qint64 shown = m_rows.toLogical(scroll, viewport()->height());
    const int width = viewport()->width() - 2 * TaskRows::margin;
    for (const LiveRow& live : std::as_const(m_live)) {
        const int y = static_cast<int>(m_rows.top(live.row) - shown + scroll);
        live.widget->setSelected(m_rows.isSelected(live.row));
        live.widget->setGeometry(TaskRows::margin, y, width, m_rows.height(live.row));
        live.widget->show();
    }
}

TaskWidget* TaskListWidget::_takeWidget(const TodoTask::Id& id)
{
    if (m_spare.isEmpty())
        return new TaskWidget(id, this, m_body);
    TaskWidget* widget = m_spare.takeLast();
    widget->setTask(id);
    return widget;
}

/// Takes the rows' heights from the font and style of the moment.
void TaskListWidget::_measureRows()
{
    if (m_spare.isEmpty()) {
        m_spare.append(new TaskWidget({}, this, m_body));
        m_spare.constLast()->hide();
    }
    for (TaskWidget* spare : std::as_const(m_spare))
        spare->fixHeight();
    for (const LiveRow& live : std::as_const(m_live))
        live.widget->fixHeight();
    const int height = m_spare.constFirst()->faceHeight();
    m_rows.setRowHeight(height);
    if (m_edited)
        m_rows.setEdited(m_rows.edited(), m_edited->faceHeight());
    verticalScrollBar()->setSingleStep(height + TaskRows::spacing);
}

TaskWidget* TaskListWidget::rowWidget(qsizetype row) const
{
    for (const LiveRow& live : m_live) {
        if (live.row == row)
            return live.widget;
    }
    return nullptr;
}

void TaskListWidget::resizeEvent(QResizeEvent* event)
{
    ScrollPanel::resizeEvent(event);
    _layoutRows();
}

void TaskListWidget::scrollContentsBy(int dx, int dy)
{
    ScrollPanel::scrollContentsBy(dx, dy);
    _syncRows();
}

void TaskListWidget::changeEvent(QEvent* event)
{
    ScrollPanel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        _measureRows();
        _layoutRows();
    }
}
