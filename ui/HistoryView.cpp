#include "ui/HistoryView.h"

#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "taskdb/BackupReader.h"
#include "taskdb/history/BackupDelta.h"
#include "ui/DragHelper.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/TaskListWidget.h"
#include "ui/UndoNote.h"
#include "ui/controls/DateWidget.h"
#include "ui/controls/OneLine.h"

#include <QLocale>

#include <array>

namespace {

/// What was done, as the end of "Undo: …".
QString nameOf(EAction kind)
{
    static constexpr std::array names = {
        QT_TRANSLATE_NOOP("HistoryView", "change"),
        QT_TRANSLATE_NOOP("HistoryView", "new task"),
        QT_TRANSLATE_NOOP("HistoryView", "edit of a task"),
        QT_TRANSLATE_NOOP("HistoryView", "tick"),
        QT_TRANSLATE_NOOP("HistoryView", "move of tasks"),
        QT_TRANSLATE_NOOP("HistoryView", "tasks added to a group"),
        QT_TRANSLATE_NOOP("HistoryView", "new order of tasks"),
        QT_TRANSLATE_NOOP("HistoryView", "deletion of tasks"),
        QT_TRANSLATE_NOOP("HistoryView", "cleanup"),
        QT_TRANSLATE_NOOP("HistoryView", "starter tasks"),
        QT_TRANSLATE_NOOP("HistoryView", "pasted tasks"),
        QT_TRANSLATE_NOOP("HistoryView", "new group"),
        QT_TRANSLATE_NOOP("HistoryView", "edit of a group"),
        QT_TRANSLATE_NOOP("HistoryView", "new order of groups"),
        QT_TRANSLATE_NOOP("HistoryView", "removal of a group"),
        QT_TRANSLATE_NOOP("HistoryView", "emptying of the Trash"),
        QT_TRANSLATE_NOOP("HistoryView", "tasks brought back"),
        QT_TRANSLATE_NOOP("HistoryView", "return to a backup"),
    };
    return HistoryView::tr(names.at(static_cast<size_t>(kind)));
}

/// What to tell of a step when it is done; empty for those that can be seen to be done.
QString toldOf(const HistoryAction& action)
{
    switch (action.kind) {
    case EAction::deleteTasks:
        return HistoryView::tr("Tasks deleted: %1").arg(action.count);
    case EAction::cleanUp:
        return HistoryView::tr("Tasks cleaned up: %1").arg(action.count);
    case EAction::removeGroup:
        return HistoryView::tr("Group removed: %1").arg(fancy::onOneLine(action.name));
    case EAction::emptyTrash:
        return HistoryView::tr("Tasks gone from the Trash: %1").arg(action.count);
    case EAction::bringBack:
        return HistoryView::tr("Tasks brought back: %1").arg(action.count);
    case EAction::returnToBackup:
        return HistoryView::tr("Back to the version of %1").arg(action.name);
    default:
        return {};
    }
}

QString dateOf(const BackupContent& content)
{
    const QDateTime& date = content.version.date;
    const QString day = date.date().toString(DateWidget::fixedDateFormat());
    return content.version.hasTime
               ? QString(day + u' ' + QLocale().toString(date.time(), QLocale::ShortFormat))
               : day;
}

} // namespace

HistoryView::HistoryView(TaskListWidget* list, FocusGroupListWidget* groups, QObject* parent)
    : QObject(parent)
    , m_list(list)
    , m_groups(groups)
{
    // Its making must not become a step that could bring it back.
    connect(&taskHistory(), &TaskHistory::interrupting, list, &TaskListWidget::discardEmptyTask);
    connect(&taskHistory(), &TaskHistory::stepDone, this, &HistoryView::_onStepDone);
    connect(&taskHistory(), &TaskHistory::replacedContent, this, &HistoryView::_onReplaced);
}

void HistoryView::undo()
{
    _run(&TaskHistory::undo);
}

void HistoryView::redo()
{
    _run(&TaskHistory::redo);
}

void HistoryView::_run(void (TaskHistory::*way)())
{
    if (dynamic_singleton<DragHelper>::inst().isDragging())
        return;
    // The last thing done is then the opening of its form.
    if (m_list->discardEmptyTask())
        return;
    m_list->endEditing();
    (taskHistory().*way)();
}

QString HistoryView::undoText()
{
    return taskHistory().canUndo() ? tr("Undo: %1").arg(nameOf(taskHistory().actionToUndo()))
                                   : tr("Undo");
}

QString HistoryView::redoText()
{
    return taskHistory().canRedo() ? tr("Redo: %1").arg(nameOf(taskHistory().actionToRedo()))
                                   : tr("Redo");
}

void HistoryView::bringBack(const BackupContent& content)
{
    m_list->endEditing();
    taskHistory().apply({EAction::bringBack, {}, {}, content.missing.size()},
                        bringBackTasks(taskStorage(), *content.snapshot, content.missing,
                                       tr("Backup of %1").arg(dateOf(content))));
}

void HistoryView::returnTo(const BackupContent& content)
{
    m_list->endEditing();
    taskHistory().apply({EAction::returnToBackup, {}, {}, 0, dateOf(content)},
                        returnToVersion(taskStorage(), *content.snapshot));
}

void HistoryView::_onStepDone(const HistoryAction& action)
{
    const QString text = toldOf(action);
    if (!text.isEmpty())
        _show(text, HistoryChange::applied);
}

/// The store tells of tasks and members, but not of what else a group is.
void HistoryView::_onReplaced(const HistoryChange& change)
{
    const FocusGroup::Id group = change.groupToShow(taskStorage(), m_groups->groupId());
    if (change.difference.panel)
        m_groups->refresh();
    m_groups->setCurrentGroup(group);
    m_list->updateGroup();
    m_list->showTasks(change.tasksToSelect(taskStorage(), m_list->groupId()));
    if (change.way == HistoryChange::applied)
        _show(toldOf(change.action), change.way);
    else
        _show((change.way == HistoryChange::undone ? tr("Undone: %1") : tr("Redone: %1"))
                  .arg(nameOf(change.action.kind)),
              change.way);
}

/// The note offers the way back from what it tells, until something else changes.
void HistoryView::_show(const QString& text, HistoryChange::EWay way)
{
    if (m_note)
        m_note->dismiss();
    const bool undone = way == HistoryChange::undone;
    m_note = new UndoNote(text, undone ? UndoNote::redo : UndoNote::undo, m_list);
    connect(m_note, &UndoNote::wanted, this, undone ? &HistoryView::redo : &HistoryView::undo);
    connect(&taskHistory(), &TaskHistory::touched, m_note, &UndoNote::dismiss);
}
