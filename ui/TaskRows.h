// The rows of the task list: what they are, where they lie, which are selected.
#pragma once

#include "taskdb/TodoTask.h"

#include <QList>

/// Rows in display order with their state and geometry, without any widget. All rows have one
/// height but the row being edited. Positions inside the list are logical pixels, which may
/// exceed what a widget can be tall; the body of the list is then shorter, and scroll positions
/// map to logical ones by proportion.
class TaskRows
{
public:
    static constexpr int margin = 7;
    static constexpr int spacing = 1;
    /// The tallest the body can be, in pixels: one less than any widget can, since a minimum height
    /// of that means none.
    static constexpr int maxBodyHeight = 16777214;

    struct Range
    {
        qsizetype first = 0;
        qsizetype last = -1; ///< before `first` when the range is empty
    };

    /// Where dropped rows would go.
    struct DropPosition
    {
        qsizetype row = -1; ///< -1 for nowhere
        bool before = true; ///< before that row, or after it

        bool operator==(const DropPosition& other) const = default;
    };

    [[nodiscard]] qsizetype count() const { return m_rows.size(); }
    [[nodiscard]] bool isValid(qsizetype row) const { return row >= 0 && row < count(); }
    [[nodiscard]] TodoTask::Id idAt(qsizetype row) const { return m_rows.at(row).id; }
    /// The row of a task, or -1. Linear.
    [[nodiscard]] qsizetype indexOf(const TodoTask::Id& id) const;

    void clear();
    /// Takes over a new order of tasks; tasks that stay keep their state.
    void assign(const QList<TodoTask::Id>& ids);
    /// Whether the rows are exactly these tasks in this order.
    [[nodiscard]] bool matches(const QList<TodoTask::Id>& ids) const;

    [[nodiscard]] bool isSelected(qsizetype row) const { return m_rows.at(row).selected; }
    [[nodiscard]] qsizetype selectedCount() const { return m_selected; }
    void setSelected(qsizetype row, bool selected);
    void clearSelection();
    /// Makes the row current and has the selection reach from there to where the first of these
    /// calls began: rows that leave this run on the way back are selected no more. Any other change
    /// of rows, selection or current row ends the run. Takes as long as there are rows passed.
    void extendSelection(qsizetype row);
    /// The current row, the anchor of selections; -1 for none. It goes where its task goes.
    [[nodiscard]] qsizetype current() const { return m_current; }
    void setCurrent(qsizetype row);
    [[nodiscard]] bool isNew(qsizetype row) const { return m_rows.at(row).isNew; }
    void setNew(qsizetype row, bool isNew) { m_rows[row].isNew = isNew; }

    /// The place for a drop at a logical position: before the row there, or behind all rows below
    /// the last one; in margins and gaps `current` stays.
    [[nodiscard]] DropPosition dropPositionAt(qint64 y, const DropPosition& current) const;
    /// The unselected row next to which the selected ones would go, and the side of it: the nearest
    /// one from the drop position downwards, or else upwards. Row -1 when all are selected.
    [[nodiscard]] DropPosition dropAnchor(const DropPosition& drop) const;

    /// Height of the rows that are not edited, in pixels.
    void setRowHeight(int height) { m_rowHeight = height; }
    /// How many rows a page key moves: those that a viewport of this height shows, less one.
    [[nodiscard]] qsizetype pageStep(int viewportHeight) const;
    /// The one row with a height of its own; -1 for none.
    void setEdited(qsizetype row, int height);
    [[nodiscard]] qsizetype edited() const { return m_edited; }

    [[nodiscard]] qint64 contentHeight() const;
    [[nodiscard]] int bodyHeight() const;
    [[nodiscard]] qint64 top(qsizetype row) const;
    [[nodiscard]] int height(qsizetype row) const;
    /// The row at a logical position, or -1 in the margins and gaps.
    [[nodiscard]] qsizetype rowAt(qint64 y) const;
    /// The rows that lie at least partly in [top, top + height).
    [[nodiscard]] Range visible(qint64 top, int height) const;

    /// The logical position at the viewport's top for a scroll position, and back.
    [[nodiscard]] qint64 toLogical(int scroll, int viewportHeight) const;
    [[nodiscard]] int toScroll(qint64 logical, int viewportHeight) const;

private:
    struct Row
    {
        TodoTask::Id id;
        bool selected;
        bool isNew;
    };

    [[nodiscard]] qsizetype _rowBelow(qint64 y) const;
    void _mark(qsizetype row, bool selected);

    QList<Row> m_rows;
    qsizetype m_selected = 0;
    qsizetype m_current = -1;
    qsizetype m_runStart = -1; // of extendSelection(); -1 for no run
    qsizetype m_edited = -1;
    int m_editedHeight = 0;
    int m_rowHeight = 1;
};
