// The column of results.
#pragma once

#include "taskdb/search/TaskQuery.h"
#include "ui/find/Command.h"
#include "ui/find/FoundTask.h"
#include "ui/find/ResultPainter.h"

#include <QAbstractScrollArea>
#include <QCache>

/// Some commands, the tasks, the other commands. Each kind has one height, so that any number of
/// rows is laid out by arithmetic, and a task is read when its row is painted or spoken. Takes no
/// focus: whoever has it moves the current row. Rows are numbered from the top.
class ResultList : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit ResultList(QWidget* parent);

    /// Replaces everything. The first row becomes current. `sameText`: these answer the same text
    /// as the ones before: the scroll position stays, and so does a current row that was chosen, on
    /// its command or task, if that is still there.
    /// `leading`: how many of the commands stand before the tasks.
    void setResults(const QList<Command>& commands, qsizetype leading,
                    const QList<TodoTask::Id>& tasks, const TaskQuery& query, bool sameText);
    /// The store has changed: tasks are read anew.
    void forgetTasks();
    /// Stands in the place of the rows where there are none; not if empty.
    void setEmptyText(const QString& text);

    [[nodiscard]] int count() const;
    /// -1 for none.
    [[nodiscard]] int currentRow() const { return m_current; }
    /// Whether setCurrentRow() made it so.
    [[nodiscard]] bool isChosen() const { return m_isChosen; }
    /// The row's command, or null for a task; valid until the results are replaced.
    [[nodiscard]] const Command* command(int row) const;
    /// The row's task, or the null identifier for a command.
    [[nodiscard]] TodoTask::Id taskId(int row) const;
    /// What screen readers say about a row.
    [[nodiscard]] QString spokenRow(int row) const;
    /// The piece of the notes that a row shows; empty for none.
    [[nodiscard]] QString shownNotes(int row) const;

    /// Makes a row current, the nearest there is, and shows it.
    void setCurrentRow(int row);
    /// How many rows a page has, at least 1.
    [[nodiscard]] int pageRows() const;

    /// The height at which everything is in view.
    [[nodiscard]] int contentHeight() const;
    /// A row's place in the viewport, also of one out of view.
    [[nodiscard]] QRect rowRect(int row) const;
    /// The row at a point of the viewport, or -1.
    [[nodiscard]] int rowAt(const QPoint& point) const;

Q_SIGNALS:
    /// A row was clicked.
    void clicked(int row);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] int _topOf(int row) const;
    [[nodiscard]] int _rowOf(int y) const;
    [[nodiscard]] const FoundTask& _task(int row) const;
    [[nodiscard]] int _placeOf(const Command& wanted) const;
    void _updateScrollBar();

    QList<Command> m_commands;
    qsizetype m_leading = 0; // of them stand before the tasks
    QList<TodoTask::Id> m_tasks;
    TaskQuery m_query;
    QString m_emptyText;
    ResultPainter m_painter;
    mutable QCache<TodoTask::Id, FoundTask> m_read;
    int m_current = -1;
    bool m_isChosen = false;
    int m_pressed = -1;
};
