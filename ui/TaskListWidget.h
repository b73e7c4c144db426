// The tasks of one group.
#pragma once

#include "taskdb/FocusGroup.h"
#include "ui/TaskRowHost.h"
#include "ui/TaskRowPanel.h"

#include <QPixmap>

#include <boost/shared_ptr.hpp>

#include <optional>

class DragGroup;
class GroupHintWidget;

/// Shows a group's tasks as a column of rows and owns their selection, editing, keys and drags.
/// What changes elsewhere in the store shows here by itself. An empty group shows what it is for.
class TaskListWidget : public TaskRowPanel, public TaskRowHost
{
    Q_OBJECT

public:
    TaskListWidget(const FocusGroup::Id& groupId, QWidget* parent = nullptr);
    ~TaskListWidget() override;

    [[nodiscard]] FocusGroup::Id groupId() const { return m_groupId; }
    /// Shows another group; a running edit ends first.
    void setGroup(const FocusGroup::Id& id);
    /// Reads the group and its tasks anew; the scroll position stays.
    void refresh();
    /// The group's record has changed: its icon may be another one.
    void updateGroup();

    /// Creates a task at the end of the group and starts editing it.
    void newTask();
    /// Starts editing the current row.
    void editTask();
    void editRow(qsizetype row) override;
    /// Files completed tasks under Completed and drops open tasks without any content.
    void cleanup();
    /// Deletes the selected tasks.
    void deleteTasks();
    /// Ticks the selected tasks, or unticks them where all are done.
    void tickTasks();
    /// Puts the selected tasks into the clipboard as an export writes them; nothing without any.
    void copyTasks() const;
    /// Makes a task of each line in the clipboard; nothing in an archive.
    void pasteTasks();
    void selectAll() { _selectAll(); }

    /// Selects those of the tasks that the group holds, the first one as the current one and in
    /// view; a running edit ends first.
    void showTasks(const QSet<TodoTask::Id>& ids);
    /// Takes away a new task that nothing was entered for. Returns whether one was being edited.
    bool discardEmptyTask();
    /// Ends the running edit, if any. To be called before the window is taken apart.
    void endEditing();
    /// A new task that was left empty vanishes.
    void stopEditing(TaskWidget* row, bool byReturn) override;
    void rowHeightChanged(TaskWidget* row) override;
    void showPartOfRow(TaskWidget* row, const QRect& part) override;

Q_SIGNALS:
    /// A drag of this task has begun; the null identifier: it has ended.
    void highlightGroups(const TodoTask::Id& taskId);
    /// A key has asked for the group's menu.
    void menuWanted();

protected:
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private Q_SLOTS:
    void _onHeadStart(const QString& target);

private:
    [[nodiscard]] TaskWidget* _createRow(QWidget* parent) override;

    void _clear();
    void _loadTasks();
    void _followStore();
    void _setTasks(const QList<TodoTask::Id>& ids);
    void _rowsChanged();
    void _keepInPlace(qsizetype row, int place);
    void _createTaskHelper(const QString& name, const QString& notes);
    void _showHint();
    [[nodiscard]] QIcon _groupIcon() const;
    void _retranslate();
    void _startEditing(qsizetype row);
    void _openForm(qsizetype row);
    void _closeForm();
    [[nodiscard]] bool _isEmptyAndNew(qsizetype row) const;

    void _selectionChanged() override;
    void _onReturn(bool shift);
    [[nodiscard]] bool _onListKey(const QKeyEvent* event);
    [[nodiscard]] qsizetype _rowByKey(int key) const;
    [[nodiscard]] QList<TodoTask> _selectedTasks() const;

    void _onTaskChanged(const TodoTask::Id& id);
    void _onGroupChanged(const FocusGroup::Id& id);

    [[nodiscard]] qsizetype _clickedRow(const QPoint& point) const;
    [[nodiscard]] bool _isDragStart(const QMouseEvent* event) const;
    void _startDrag(Qt::KeyboardModifiers keys);
    void _finishDrag(bool movedAway);
    [[nodiscard]] boost::shared_ptr<DragGroup> _draggedTasks() const;
    [[nodiscard]] QString _draggedText() const;
    [[nodiscard]] QPixmap _dragPicture();
    void _reorderSelected(DragGroup& drag, const TaskRows::DropPosition& drop) override;

    bool m_endedByReturn = false;
    TaskWidget* m_edited = nullptr;
    FocusGroup::Id m_groupId;
    GroupHintWidget* m_hint = nullptr;
    bool m_followPending = false;

    QPixmap m_background;
    bool m_mayDrag = false;  // the left button went down while nothing was edited
    bool m_leftDown = false; // pressed in the list, outside of the edited row
    // False once the hint's link was clicked: a double click on it comes here with its second half.
    bool m_firstClickHere = true;
    QPoint m_pressPoint;
    std::optional<TodoTask::Id> m_pressed; // the task there, null for empty space
};
