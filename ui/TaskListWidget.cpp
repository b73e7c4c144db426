#include "ui/TaskListWidget.h"

#include "app/base/DayWatch.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "ui/ActionsHelper.h"
#include "ui/DragHelper.h"
#include "ui/DragPicture.h"
#include "ui/GroupHintWidget.h"
#include "ui/RunningDrag.h"
#include "ui/StarterTask.h"
#include "ui/TaskListAccessible.h"
#include "ui/TaskWidget.h"
#include "ui/icons/IconsHelper.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>

#include <boost/make_shared.hpp>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool extends(const QInputEvent* event)
{
    return (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
}

} // namespace

TaskListWidget::TaskListWidget(const FocusGroup::Id& groupId, QWidget* parent)
    : TaskRowPanel(parent)
    , m_groupId(groupId)
    , m_background(u":/image/backgroundpattern"_s)
{
    installTaskListAccessible();
    connect(&taskStorage(), &TaskStorage::taskChanged, this, &TaskListWidget::_onTaskChanged);
    connect(&taskStorage(), &TaskStorage::groupChanged, this, &TaskListWidget::_onGroupChanged);
    connect(new DayWatch(this), &DayWatch::dayChanged, this, &TaskListWidget::_repaintRows);
    _retranslate();
    _measureRows();
    _loadTasks();
}

TaskListWidget::~TaskListWidget()
{
    // No row is shown any more: only the store is put in order.
    if (!m_edited)
        return;
    m_edited->disconnectEdits();
    if (_isEmptyAndNew(m_rows.edited()))
        taskStorage().removeTask(m_groupId, m_rows.idAt(m_rows.edited()), true);
    taskHistory().end();
}

void TaskListWidget::endEditing()
{
    stopEditing(m_edited, false);
}

bool TaskListWidget::discardEmptyTask()
{
    if (!m_edited || !_isEmptyAndNew(m_rows.edited()))
        return false;
    endEditing();
    return true;
}

/// A new task that nothing was entered for.
bool TaskListWidget::_isEmptyAndNew(qsizetype row) const
{
    return m_rows.isValid(row) && m_rows.isNew(row) && taskStorage().get(m_rows.idAt(row)).empty();
}

void TaskListWidget::setGroup(const FocusGroup::Id& id)
{
    if (id == m_groupId)
        return;
    _clear();
    m_groupId = id;
    delete std::exchange(m_hint, nullptr);
    _loadTasks();
    verticalScrollBar()->setValue(0);
}

void TaskListWidget::refresh()
{
    if (m_groupId.isNull())
        return;
    const int vertical = verticalScrollBar()->value();
    const int horizontal = horizontalScrollBar()->value();
    const FocusGroup::Id id = m_groupId;
    _clear();
    m_groupId = id;
    _loadTasks();
    verticalScrollBar()->setValue(vertical);
    horizontalScrollBar()->setValue(horizontal);
}

void TaskListWidget::updateGroup()
{
    if (m_hint)
        m_hint->updateIcon(_groupIcon());
}

QIcon TaskListWidget::_groupIcon() const
{
    const FocusGroup group = taskStorage().getGroup(m_groupId);
    return dynamic_singleton<IconsHelper>::inst().groupIcon(m_groupId, group.iconName(),
                                                            group.tasks().isEmpty());
}

/// An empty group shows its hint, any other none.
void TaskListWidget::_showHint()
{
    if (m_rows.count() > 0) {
        if (m_hint) {
            m_hint->hide();
            m_hint->deleteLater();
            m_hint = nullptr;
            _setFiller(nullptr);
        }
        return;
    }
    if (m_hint)
        return;
    m_hint = new GroupHintWidget(_groupIcon(), GroupHintWidget::hintForGroup(m_groupId), _body());
    connect(m_hint, &GroupHintWidget::headStart, this, &TaskListWidget::_onHeadStart);
    _setFiller(m_hint);
}

void TaskListWidget::_retranslate()
{
    setAccessibleName(tr("Tasks"));
    if (m_hint)
        m_hint->setText(GroupHintWidget::hintForGroup(m_groupId));
}

TaskWidget* TaskListWidget::_createRow(QWidget* parent)
{
    return new TaskWidget({}, this, parent);
}

void TaskListWidget::_clear()
{
    stopEditing(m_edited, false);
    m_groupId = {};
    m_rows.clear();
    _layoutRows();
}

void TaskListWidget::_loadTasks()
{
    _setTasks(taskStorage().getGroup(m_groupId).tasks().toList());
}

/// Shows the tasks that the group holds now. Commands of the list end here as changes from
/// elsewhere do: they change the store, and nothing else.
void TaskListWidget::_followStore()
{
    m_followPending = false;
    const QList<TodoTask::Id> ids = taskStorage().getGroup(m_groupId).tasks().toList();
    if (m_rows.matches(ids))
        return;
    const int place = m_edited ? rowRect(m_rows.edited()).top() : 0;
    _setTasks(ids);
    // Where one types stays where it is while rows above come and go.
    if (m_edited)
        _keepInPlace(m_rows.edited(), place);
}

void TaskListWidget::_setTasks(const QList<TodoTask::Id>& ids)
{
    m_rows.assign(ids);
    if (m_edited && m_rows.edited() < 0) {
        _closeForm();
        taskHistory().end();
    }
    _rowsChanged();
    _selectionChanged();
}

/// Rows have come, gone, changed places or the edited one.
void TaskListWidget::_rowsChanged()
{
    _showHint();
    _layoutRows();
    announceRows(this);
}

/// Scrolls so that a row lies at a height of the viewport, where it was before others changed.
void TaskListWidget::_keepInPlace(qsizetype row, int place)
{
    if (m_rows.isValid(row))
        verticalScrollBar()->setValue(verticalScrollBar()->value() + rowRect(row).top() - place);
}

/// Fills the Inbox with tasks that show a new user around.
void TaskListWidget::_onHeadStart(const QString& /*target*/)
{
    if (m_groupId != TaskStorage::ms_inboxId)
        return;
    {
        const HistoryStep step(taskHistory(), {EAction::starterTasks, m_groupId});
        for (const StarterTask& task : StarterTask::all())
            _createTaskHelper(task.name, task.notes);
    }
    _followStore();
    m_firstClickHere = false;
}

void TaskListWidget::_createTaskHelper(const QString& name, const QString& notes)
{
    TodoTask task = taskStorage().get(taskStorage().createTask(m_groupId));
    task.rename(name);
    task.setNotes(notes);
}

void TaskListWidget::newTask()
{
    // The group may have been removed elsewhere.
    if (taskStorage().getGroup(m_groupId).id().isNull())
        return;
    _startEditing(-1);
    taskHistory().begin({EAction::newTask, m_groupId});
    const TodoTask::Id id = taskStorage().createTask(m_groupId);
    _followStore();
    if (m_rows.indexOf(id) < 0) {
        taskHistory().end();
        return;
    }
    _openForm(m_rows.indexOf(id));
    m_rows.setNew(m_rows.edited(), true);
    _makeVisible(m_rows.edited());
}

void TaskListWidget::editTask()
{
    editRow(m_rows.current());
}

void TaskListWidget::editRow(qsizetype row)
{
    if (m_rows.isValid(row))
        _startEditing(row);
}

void TaskListWidget::cleanup()
{
    if (m_rows.count() == 0)
        return;
    stopEditing(m_edited, false);
    QList<TodoTask> tasks;
    for (qsizetype row = m_rows.count() - 1; row >= 0; --row) {
        const TodoTask task = taskStorage().get(m_rows.idAt(row));
        if (task.completed() || task.empty())
            tasks.append(task);
    }
    {
        const HistoryStep step(taskHistory(), {EAction::cleanUp, m_groupId, {}, tasks.size()});
        for (const TodoTask& task : std::as_const(tasks)) {
            if (task.completed())
                taskStorage().moveTasks(m_groupId, TaskStorage::ms_completedId, {task.id()});
            else
                taskStorage().removeTask(m_groupId, task.id(), false);
        }
    }
    _followStore();
}

void TaskListWidget::deleteTasks()
{
    stopEditing(m_edited, false);
    if (m_rows.selectedCount() == 0)
        return;
    {
        const HistoryStep step(taskHistory(),
                               {EAction::deleteTasks, m_groupId, {}, m_rows.selectedCount()});
        for (qsizetype row = 0; row < m_rows.count(); ++row) {
            if (m_rows.isSelected(row))
                taskStorage().removeTask(m_groupId, m_rows.idAt(row), false);
        }
    }
    _clearSelection();
    _followStore();
}

void TaskListWidget::_startEditing(qsizetype row)
{
    if (row == -1) {
        stopEditing(m_edited, false);
        return;
    }
    if (!m_rows.isValid(row) || row == m_rows.edited())
        return;
    const TodoTask::Id id = m_rows.idAt(row);
    if (m_edited) {
        // Ending the other edit may take its row away.
        stopEditing(m_edited, false);
        row = m_rows.indexOf(id);
    }
    if (!m_rows.isValid(row))
        return;
    taskHistory().begin({EAction::editTask, m_groupId, {id}});
    _openForm(row);
}

void TaskListWidget::_openForm(qsizetype row)
{
    m_pressed.reset();
    _selectOnly(row);
    // The edited row has a widget wherever it lies.
    m_rows.setEdited(row, m_rows.height(row));
    _layoutRows();
    m_edited = rowWidget(row);
    m_edited->setEditing(true, false, false);
    m_rows.setEdited(row, m_edited->faceHeight());
    _layoutRows();
    _makeVisible(row);
}

/// Takes the edited row out of editing. The focus goes to the list first: it would go with the
/// form otherwise, and the toolkit would look for another field and scroll there.
void TaskListWidget::_closeForm()
{
    TaskWidget* row = std::exchange(m_edited, nullptr);
    if (row->isAncestorOf(focusWidget()))
        setFocus(Qt::OtherFocusReason);
    row->setEditing(false, false, false);
}

void TaskListWidget::stopEditing(TaskWidget* row, bool byReturn)
{
    if (!m_edited || row != m_edited)
        return;
    const qsizetype index = m_rows.edited();
    // Where the form lies above what is in view, that stays where it is.
    const bool isAbove = rowRect(index).bottom() < 0 && m_rows.isValid(index + 1);
    const TodoTask::Id below = isAbove ? m_rows.idAt(index + 1) : TodoTask::Id();
    const int place = rowRect(index + 1).top();
    _closeForm();
    m_rows.setEdited(-1, 0);
    m_endedByReturn = byReturn;
    const bool vanishes = _isEmptyAndNew(index);
    m_rows.setNew(index, false);
    _rowsChanged();
    if (vanishes) {
        taskStorage().removeTask(m_groupId, m_rows.idAt(index), true);
        _clearSelection();
        _followStore();
    }
    taskHistory().end();
    if (isAbove)
        _keepInPlace(m_rows.indexOf(below), place);
}

void TaskListWidget::showTasks(const QSet<TodoTask::Id>& ids)
{
    endEditing();
    _followStore();
    qsizetype first = -1;
    _clearSelection();
    for (qsizetype row = m_rows.count() - 1; row >= 0; --row) {
        if (!ids.contains(m_rows.idAt(row)))
            continue;
        m_rows.setSelected(row, true);
        first = row;
    }
    if (first >= 0) {
        _addToSelection(first);
        _makeVisible(first);
    }
}

void TaskListWidget::rowHeightChanged(TaskWidget* row)
{
    if (row != m_edited)
        return;
    m_rows.setEdited(m_rows.edited(), row->faceHeight());
    _layoutRows();
}

void TaskListWidget::showPartOfRow(TaskWidget* row, const QRect& part)
{
    if (row != m_edited)
        return;
    const qint64 top = m_rows.top(m_rows.edited()) + part.top();
    _scrollTo(top - TaskRows::margin, top + part.height() + TaskRows::margin);
}

void TaskListWidget::_selectionChanged()
{
    TaskRowPanel::_selectionChanged();
    dynamic_singleton<ActionsHelper>::inst().editTask()->setEnabled(m_rows.current() >= 0);
    announceSelection(this);
}

void TaskListWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_pressPoint = event->position().toPoint();
    m_mayDrag = m_edited == nullptr;
    const qsizetype pressed = rowAt(m_pressPoint);
    const TodoTask::Id id = pressed >= 0 ? m_rows.idAt(pressed) : TodoTask::Id();
    _startEditing(-1);
    m_firstClickHere = true;
    m_pressed = id;
    m_leftDown = true;
    // Ending the edit may have taken a row away.
    const qsizetype row = _clickedRow(m_pressPoint);
    _holdRow(row);
    if (!extends(event) && (row < 0 || !m_rows.isSelected(row)))
        _clearSelection();
    if (row < 0)
        return;
    if ((event->modifiers() & Qt::ShiftModifier) && m_rows.isValid(m_rows.current()))
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
    m_mayDrag = false;
    _holdRow(-1);
    // After a press elsewhere, and as the second of a double click, a release selects nothing.
    if (!std::exchange(m_leftDown, false))
        return;
    const qsizetype row = _clickedRow(event->position().toPoint());
    if (!extends(event) && row >= 0)
        _selectOnly(row);
}

/// The row at a point; near the last press the row that was pressed, wherever the end of an edit
/// has moved it since.
qsizetype TaskListWidget::_clickedRow(const QPoint& point) const
{
    const int way = (point - m_pressPoint).manhattanLength();
    if (!m_pressed || way >= QApplication::startDragDistance())
        return rowAt(point);
    const qsizetype row = rowAt(point);
    return row >= 0 && m_rows.idAt(row) == *m_pressed ? row : m_rows.indexOf(*m_pressed);
}

void TaskListWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    if (!m_firstClickHere)
        return;
    const qsizetype row = _clickedRow(event->position().toPoint());
    _clearSelection();
    if (row < 0) {
        newTask();
    } else {
        _startEditing(row);
        // Also the row that is being edited already.
        _selectOnly(m_rows.edited());
    }
}

void TaskListWidget::_onTaskChanged(const TodoTask::Id& id)
{
    const qsizetype row = _reloadRow(id);
    // The form's fields announce what is typed in them.
    if (row != m_rows.edited())
        announceRow(this, row);
}

void TaskListWidget::_onGroupChanged(const FocusGroup::Id& id)
{
    if (id != m_groupId || m_followPending)
        return;
    // Bulk changes tell of every single task: look once, when they are done.
    m_followPending = true;
    QMetaObject::invokeMethod(this, &TaskListWidget::_followStore, Qt::QueuedConnection);
}

bool TaskListWidget::_isDragStart(const QMouseEvent* event) const
{
    if (!(event->buttons() & Qt::LeftButton) || !m_mayDrag || m_rows.selectedCount() == 0 ||
        dynamic_singleton<DragHelper>::inst().isDragging())
        return false;
    const QPoint way = event->position().toPoint() - m_pressPoint;
    return way.manhattanLength() >= QApplication::startDragDistance();
}

void TaskListWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (_isDragStart(event))
        _startDrag(event->modifiers());
}

boost::shared_ptr<DragGroup> TaskListWidget::_draggedTasks() const
{
    const auto drag = boost::make_shared<DragGroup>(DragGroup::TasksDrag);
    for (qsizetype row = 0; row < m_rows.count(); ++row) {
        if (m_rows.isSelected(row))
            drag->addTask(m_groupId, m_rows.idAt(row));
    }
    return drag;
}

/// What other programs get from the drag.
QString TaskListWidget::_draggedText() const
{
    QStringList lines;
    for (qsizetype row = 0; row < m_rows.count(); ++row) {
        if (m_rows.isSelected(row))
            lines += taskStorage().get(m_rows.idAt(row)).toString();
    }
    return lines.join("\r\n"_L1);
}

QPixmap TaskListWidget::_dragPicture()
{
    qsizetype row = -1;
    const auto next = [this, &row](qsizetype /*number*/) {
        do
            ++row;
        while (!m_rows.isSelected(row));
        return _detachedRow(row);
    };
    return dragPicture(m_rows.selectedCount(), next);
}

void TaskListWidget::_startDrag(Qt::KeyboardModifiers keys)
{
    const boost::shared_ptr<DragGroup> tasks = _draggedTasks();
    tasks->setCopy((keys & Qt::ControlModifier) != 0 && !TaskStorage::isArchive(m_groupId));
    RunningDrag drag(this, tasks);
    drag.setText(_draggedText());
    const qsizetype pressed = rowAt(m_pressPoint);
    const QPoint corner = pressed >= 0 ? rowRect(pressed).topLeft() : m_pressPoint;
    drag.setPicture(_dragPicture(), m_pressPoint - corner);

    for (const TodoTask::Id& id : tasks->tasks().value(m_groupId))
        Q_EMIT highlightGroups(id);
    const bool moved = drag.exec();
    if (!drag.isOrphaned())
        _finishDrag(moved && tasks->result() == DragGroup::Moved);
}

void TaskListWidget::_finishDrag(bool movedAway)
{
    if (movedAway) {
        _followStore();
        _clearSelection();
    }
    Q_EMIT highlightGroups({});
    // The release of the button went to the drag.
    m_mayDrag = false;
    m_leftDown = false;
    _holdRow(-1);
}

void TaskListWidget::_reorderSelected(DragGroup& drag, const TaskRows::DropPosition& drop)
{
    const TaskRows::DropPosition anchor = m_rows.dropAnchor(drop);
    if (anchor.row < 0)
        return;
    const QList<TodoTask::Id> tasks =
        drag.tasks().isEmpty() ? QList<TodoTask::Id>() : *drag.tasks().cbegin();
    {
        const HistoryStep step(taskHistory(), {EAction::reorderTasks, m_groupId, tasks});
        taskStorage().reorderTasks(m_groupId, m_rows.idAt(anchor.row), anchor.before, tasks);
    }
    _followStore();
    drag.setResult(DragGroup::Reordered);
}

void TaskListWidget::changeEvent(QEvent* event)
{
    TaskRowPanel::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        _retranslate();
}
