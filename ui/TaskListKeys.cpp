// The task list by keyboard.
#include "app/core/TaskCore.h"
#include "taskdb/ExportText.h"
#include "ui/TaskListWidget.h"
#include "ui/TaskWidget.h"
#include "ui/controls/OneLine.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QStringList linesOf(QString text)
{
    text.replace("\r\n"_L1, "\n"_L1);
    for (const QChar separator :
         {QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        text.replace(separator, u'\n');
    return text.split(u'\n', Qt::SkipEmptyParts);
}

/// Makes a task of a line, which may be one that exportLine() has written. Returns the task, null
/// for a blank line.
TodoTask::Id createTask(const FocusGroup::Id& group, QStringView line)
{
    while (!line.isEmpty() && line.front().isSpace())
        line = line.sliced(1);
    const bool done = line.startsWith("= "_L1);
    if (done || line.startsWith("- "_L1))
        line = line.sliced(2);
    line = line.trimmed();
    if (line.isEmpty())
        return {};
    TodoTask task = taskStorage().get(taskStorage().createTask(group));
    task.rename(fancy::onOneLine(line.left(TaskWidget::longestName).toString()));
    task.setCompleted(done);
    return task.id();
}

} // namespace

void TaskListWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::SelectAll)) {
        _selectAll();
        return;
    }
    if (!m_edited && _onListKey(event))
        return;
    switch (event->key()) {
    case Qt::Key_Down:
    case Qt::Key_Up:
        break;
    case Qt::Key_Return:
        _onReturn((event->modifiers() & Qt::ShiftModifier) != 0);
        break;
    case Qt::Key_Enter:
        // Ends an edit as Return does, but never starts one.
        m_endedByReturn = false;
        TaskRowPanel::keyPressEvent(event);
        break;
    case Qt::Key_Escape:
        if (m_edited)
            stopEditing(m_edited, false);
        else
            TaskRowPanel::keyPressEvent(event);
        break;
    case Qt::Key_Delete:
        if (!m_edited)
            deleteTasks();
        break;
    default:
        TaskRowPanel::keyPressEvent(event);
    }
}

void TaskListWidget::_onReturn(bool shift)
{
    // The name field lets the Return that ended an edit pass on to the list.
    const bool endedByThis = std::exchange(m_endedByReturn, false);
    if (m_edited || endedByThis || !m_rows.isValid(m_rows.current()))
        return;
    if (shift)
        newTask();
    else
        _startEditing(m_rows.current());
}

/// The keys that an open form has for itself. Returns whether this was one of them.
bool TaskListWidget::_onListKey(const QKeyEvent* event)
{
    const auto others = event->modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (event->matches(QKeySequence::Copy)) {
        copyTasks();
    } else if (event->matches(QKeySequence::Paste)) {
        pasteTasks();
    } else if (event->key() == Qt::Key_F10 && others == Qt::ShiftModifier) {
        // The other key for menus, of which no event for a menu comes here.
        Q_EMIT menuWanted();
    } else if (event->key() == Qt::Key_Space && others == Qt::NoModifier) {
        // A key that is held down would tick and untick.
        if (!event->isAutoRepeat())
            tickTasks();
    } else if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down ||
               (_rowByKey(event->key()) >= 0 && !(others & ~Qt::ShiftModifier))) {
        _moveCurrent(_rowByKey(event->key()), (others & Qt::ShiftModifier) != 0);
    } else {
        return false;
    }
    return true;
}

/// The row that a key moves to; -1 for other keys, and past the ends perhaps no row.
qsizetype TaskListWidget::_rowByKey(int key) const
{
    const qsizetype current = m_rows.current();
    const qsizetype fromBelow = current < 0 ? m_rows.count() : current;
    const qsizetype page = m_rows.pageStep(viewport()->height());
    switch (key) {
    case Qt::Key_Down:
        return current + 1;
    case Qt::Key_Up:
        return fromBelow - 1;
    case Qt::Key_PageDown:
        return qMin(current + page, m_rows.count() - 1);
    case Qt::Key_PageUp:
        return qMax(fromBelow - page, qsizetype{0});
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return m_rows.count() - 1;
    default:
        return -1;
    }
}

/// Copies: ticking one tells listeners, which may change the rows.
QList<TodoTask> TaskListWidget::_selectedTasks() const
{
    QList<TodoTask> tasks;
    for (qsizetype row = 0; row < m_rows.count(); ++row) {
        if (m_rows.isSelected(row))
            tasks += taskStorage().get(m_rows.idAt(row));
    }
    return tasks;
}

/// All are done then, or all open where they were done.
void TaskListWidget::tickTasks()
{
    const QList<TodoTask> tasks = _selectedTasks();
    const bool allDone = std::all_of(tasks.cbegin(), tasks.cend(),
                                     [](const TodoTask& task) { return task.completed(); });
    const HistoryStep step(taskHistory(), {EAction::tick, m_groupId});
    for (TodoTask task : tasks)
        task.setCompleted(!allDone);
}

void TaskListWidget::copyTasks() const
{
    if (m_rows.selectedCount() == 0)
        return;
    QString lines;
    for (const TodoTask& task : _selectedTasks())
        lines += exportLine(task) + "\r\n"_L1;
    QGuiApplication::clipboard()->setText(lines);
}

/// Makes a task of each line in the clipboard.
void TaskListWidget::pasteTasks()
{
    // The group may have been removed elsewhere.
    if (TaskStorage::isArchive(m_groupId) || taskStorage().getGroup(m_groupId).id().isNull())
        return;
    QList<TodoTask::Id> pasted;
    {
        const HistoryStep step(taskHistory(), {EAction::pasteTasks, m_groupId});
        for (const QString& line : linesOf(QGuiApplication::clipboard()->text()))
            pasted += createTask(m_groupId, line);
    }
    pasted.removeAll(TodoTask::Id());
    if (pasted.isEmpty())
        return;
    _followStore();
    const qsizetype first = m_rows.indexOf(pasted.constFirst());
    const qsizetype last = m_rows.count() - 1;
    _selectOnly(first);
    _selectRange(last);
    _scrollTo(m_rows.top(first) - TaskRows::margin,
              m_rows.top(last) + m_rows.height(last) + TaskRows::margin);
}

/// By a key only: the mouse opens no menu here, and a form's fields have their own.
void TaskListWidget::contextMenuEvent(QContextMenuEvent* event)
{
    const bool wanted = event->reason() == QContextMenuEvent::Keyboard && !m_edited;
    event->setAccepted(wanted);
    if (wanted)
        Q_EMIT menuWanted();
}
