// The scrolling column of task rows, of which only those in view exist as widgets.
#pragma once

#include "ui/ScrollPanel.h"
#include "ui/TaskRows.h"

#include <QPointer>

class DragAutoScroll;
class DragGroup;
class TaskWidget;

/// Lays task rows out by hand and gives a widget to the rows in view, the edited one and the one
/// that the mouse holds, so that any number of rows costs the same. Rows are numbered from the top.
class TaskRowPanel : public ScrollPanel
{
    Q_OBJECT

public:
    explicit TaskRowPanel(QWidget* parent);

    [[nodiscard]] const TaskRows& rows() const { return m_rows; }
    /// The anchor of selections by key and Shift; -1 for none.
    [[nodiscard]] qsizetype currentIndex() const { return m_rows.current(); }
    /// Starts editing a row; nothing for one that does not exist.
    virtual void editRow(qsizetype row) = 0;
    /// The widget of a row, or null while it is out of view.
    [[nodiscard]] TaskWidget* rowWidget(qsizetype row) const;
    /// A row's place in the viewport, also of one out of view.
    [[nodiscard]] QRect rowRect(qsizetype row) const;
    /// A height in the viewport as a position inside the list.
    [[nodiscard]] qint64 logicalY(int y) const;
    /// The row at a point of the viewport, or -1.
    [[nodiscard]] qsizetype rowAt(const QPoint& point) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    /// A new widget, for whichever rows come to need one; not called by the constructor.
    [[nodiscard]] virtual TaskWidget* _createRow(QWidget* parent) = 0;

    /// Tasks were dropped at a place that the panel had shown.
    virtual void _reorderSelected(DragGroup& drag, const TaskRows::DropPosition& drop) = 0;

    /// To be called whenever rows have come, gone, moved or changed their height.
    void _layoutRows();
    /// Takes the rows' heights from the font and style of the moment.
    void _measureRows();
    /// Repaints all rows.
    void _repaintRows();
    /// Makes the row current and selects it; nothing for one that does not exist.
    void _addToSelection(qsizetype row);
    void _selectOnly(qsizetype row);
    /// Selects from the current row, the anchor, to `row`; the anchor stays current.
    void _selectRange(qsizetype row);
    void _selectAll();
    /// Leaves no row current either.
    void _clearSelection();
    /// Moves the current row, if there is such a row, and shows it. It alone is selected then, or,
    /// with `extend`, the selection reaches that far.
    void _moveCurrent(qsizetype row, bool extend);
    /// Called after each of these; the row widgets show the selection.
    virtual void _selectionChanged();
    /// Has a task's row widget read it anew. Returns the row, -1 if it has no widget.
    qsizetype _reloadRow(const TodoTask::Id& id);

    /// Scrolls as little as needed to show the row with its margins.
    void _makeVisible(qsizetype row);
    /// Scrolls as little as needed to show [top, bottom) in logical pixels; a taller stretch from
    /// its top.
    void _scrollTo(qint64 top, qint64 bottom);

    /// Keeps a row's widget to that row while the mouse is down on it; -1 lets it go.
    void _holdRow(qsizetype row);
    /// Centres a widget where the rows would be; null for none. The widget stays the caller's.
    void _setFiller(QWidget* filler);
    [[nodiscard]] QWidget* _body() const { return m_body; }
    /// A widget that shows the task as a row of this list does, until the next call of any function
    /// here; never visible itself.
    [[nodiscard]] TaskWidget* _detachedRow(qsizetype row);

    TaskRows m_rows;

private:
    struct LiveRow
    {
        qsizetype row;
        TaskWidget* widget;
    };

    void _syncRows();
    void _syncOnce();
    [[nodiscard]] QList<LiveRow> _wantedRows() const;
    void _releaseUnwanted(QList<LiveRow>& wanted, const QList<TaskWidget*>& left);
    void _placeRows();
    void _placeFiller();
    void _setDropPosition(const QPoint& point);
    TaskRows::DropPosition _clearDropPosition();
    [[nodiscard]] TaskWidget* _takeWidget(const TodoTask::Id& id);
    [[nodiscard]] qint64 _shownTop() const;

    QWidget* m_body;
    QList<LiveRow> m_live;      // the rows that have a widget
    QList<TaskWidget*> m_spare; // hidden widgets for rows to come
    QPointer<TaskWidget> m_held;
    QPointer<QWidget> m_filler;
    bool m_syncing = false;
    bool m_syncAgain = false;
    TaskRows::DropPosition m_drop;
    DragAutoScroll* m_autoScroll;
};
