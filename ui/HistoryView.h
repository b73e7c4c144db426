// Undo and redo as the user sees them.
#pragma once

#include "taskdb/history/TaskHistory.h"

#include <QObject>
#include <QPointer>

class FocusGroupListWidget;
class TaskListWidget;
class UndoNote;
struct BackupContent;

/// Undoes and redoes, shows in panel and list what that has changed, and tells by a note of what
/// removes much and of what was undone.
class HistoryView : public QObject
{
    Q_OBJECT

public:
    /// Both are not owned, and lie in the same window.
    HistoryView(TaskListWidget* list, FocusGroupListWidget* groups, QObject* parent);

    /// Neither does anything while something is dragged. An open form closes first.
    void undo();
    void redo();
    /// What undo() would do, in words; just "Undo" where there is nothing to undo.
    [[nodiscard]] static QString undoText();
    [[nodiscard]] static QString redoText();

    /// One step each.
    void bringBack(const BackupContent& content);
    void returnTo(const BackupContent& content);

private:
    void _run(void (TaskHistory::*way)());
    void _onStepDone(const HistoryAction& action);
    void _onReplaced(const HistoryChange& change);
    void _show(const QString& text, HistoryChange::EWay way);

    TaskListWidget* m_list;
    FocusGroupListWidget* m_groups;
    QPointer<UndoNote> m_note;
};
