// The tasks of one group.
#pragma once

#include "taskdb/FocusGroup.h"
#include "ui/ScrollPanel.h"
#include "ui/TaskRows.h"

class TaskWidget;

/// Shows a group's tasks as a column of rows and owns their selection, editing and keys. Row
/// widgets exist for the rows in view and the edited one only, so any number of tasks costs the
/// same. What changes elsewhere in the store shows here by itself.
class TaskListWidget : public ScrollPanel
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
    /// Reads the group's record anew.
    void updateGroup();

    /// Creates a task at the end of the group and starts editing it.
    void newTask();
    /// Starts editing the current row.
    void editTask();
    /// Files completed tasks under Completed and drops open tasks without any content.
    void cleanup();
    /// Deletes the selected tasks.
    void deleteTasks();

    /// Ends the running edit, if any; a new task that was left empty vanishes. `byReturn`: the
    /// list is about to see the Return key that ended it.
    void _stopEditing(TaskWidget* row, bool byReturn);

    // What is in the list, for tests and tools; rows are numbered from the top.
    [[nodiscard]] const TaskRows& rows() const { return m_rows; }
    [[nodiscard]] qsizetype currentIndex() const { return m_current; }
    /// The widget of a row, or null while it is out of view.
    [[nodiscard]] TaskWidget* rowWidget(qsizetype row) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void _clear();
    void _loadTasks();
    void _addTask(const TodoTask::Id& id, bool edit);
    void _startEditing(qsizetype row);
    void _makeVisible(qsizetype row);

    void _addToSelection(qsizetype row);
    void _selectOnly(qsizetype row);
    void _selectRange(qsizetype row);
    void _clearSelection();
    void _selectionChanged();
    void _selectAll();
    void _selectNeighbour(qsizetype row, bool extend);
    [[nodiscard]] qsizetype _findWidgetByPos(const QPoint& point) const;

    void _onTaskChanged(const TodoTask::Id& id);
    void _onGroupChanged(const FocusGroup::Id& id);
    void _followStore();

    void _layoutRows();
    void _syncRows();
    void _placeRows();
    [[nodiscard]] TaskWidget* _takeWidget(const TodoTask::Id& id);
    void _measureRows();

    struct LiveRow
    {
        qsizetype row;
        TaskWidget* widget;
    };

    TaskRows m_rows;
    qsizetype m_current = -1;
    bool m_endedByReturn = false;
    TaskWidget* m_edited = nullptr;
    FocusGroup::Id m_groupId;
    FocusGroup m_group;

    QWidget* m_body;
    QList<LiveRow> m_live;      // the rows that have a widget
    QList<TaskWidget*> m_spare; // hidden widgets for rows to come
    bool m_followPending = false;
};
