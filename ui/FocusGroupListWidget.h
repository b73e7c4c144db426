// The panel of groups.
#pragma once

#include "taskdb/FocusGroup.h"
#include "ui/ScrollPanel.h"
#include "ui/TaskSections.h"

#include <QHash>
#include <QPixmap>
#include <QPointer>

#include <boost/shared_ptr.hpp>

class DragAutoScroll;
class DragGroup;
class FocusGroupWidget;
class QMenu;
class QVBoxLayout;

/// Lists Inbox, the custom groups in the store's order, Completed and Trash, and tracks which is
/// current. Adds, edits, orders and removes custom groups.
class FocusGroupListWidget : public ScrollPanel
{
    Q_OBJECT
    Q_PROPERTY(FocusGroup::Id groupId READ groupId WRITE setCurrentGroup NOTIFY activated)

public:
    explicit FocusGroupListWidget(QWidget* parent = nullptr);

    [[nodiscard]] FocusGroup::Id groupId() const { return m_groupId; }
    void setCurrentGroup(const FocusGroup::Id& id);
    /// The current group's place from the top, or -1.
    [[nodiscard]] qsizetype currentIndex() const { return m_current; }
    /// Makes the n-th group from the top current; nothing for one that does not exist.
    void setCurrentIndex(qsizetype index);
    /// Opens the current group's menu, at its entry or, while the panel is collapsed, at the
    /// panel's corner.
    void showMenu();
    /// Reads the custom groups and their order anew.
    void refresh();

    /// The entries in display order.
    [[nodiscard]] const QList<FocusGroupWidget*>& entries() const { return m_entries; }

public Q_SLOTS:
    void _onAddGroup();
    /// Acts on the current group, wherever the menu was opened; so does removing.
    void _onEditGroup();
    void _onRemoveGroup();
    void _onEmptyTrash();
    void _onExport();
    /// Marks the groups that hold the task; none for the null identifier.
    void _onHighlightGroups(const TodoTask::Id& taskId);

Q_SIGNALS:
    /// Another group became the current one.
    void activated(const FocusGroup::Id& id);
    /// The current group's properties changed.
    void changed(const FocusGroup::Id& id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void _loadGroups();
    void _addCustomGroups();
    FocusGroupWidget* _addGroup(const FocusGroup::Id& id);
    FocusGroupWidget* _addEntry(const FocusGroup::Id& id, QVBoxLayout* layout);
    void _removeEntry(FocusGroupWidget* entry);
    void _numberEntries();
    void _makeVisible(FocusGroupWidget* entry);
    [[nodiscard]] FocusGroupWidget* _entryAt(const QPoint& point) const;
    void _buildMenu();
    [[nodiscard]] bool _dragTo(const QPoint& point);
    void _endDragOver();

    [[nodiscard]] FocusGroupWidget* _dragSource(const QMouseEvent* event) const;
    void _startDrag(FocusGroupWidget* entry);

    void _onTaskChanged(const TodoTask::Id& id);
    void _onGroupChanged(const FocusGroup::Id& id);
    void _onDayChanged();
    void _invalidateAll();
    void _scheduleUpdate();
    void _updateEntries();

    QList<FocusGroupWidget*> m_entries;
    qsizetype m_current = -1;
    FocusGroup::Id m_groupId;
    QPixmap m_background;
    QVBoxLayout* m_mainLayout;
    QVBoxLayout* m_customLayout;
    QPointer<QMenu> m_menu;
    QPointer<FocusGroupWidget> m_menuEntry; // under the pointer when the menu opened
    bool m_leftDown = false;
    QPoint m_pressPoint;
    QPointer<FocusGroupWidget> m_pressed;
    QPoint m_hotSpot; // where in that entry
    // What is dragged over the panel, and the entry below it.
    boost::shared_ptr<DragGroup> m_drag;
    QPointer<FocusGroupWidget> m_dragEntry;

    QHash<FocusGroup::Id, FocusGroupWidget*> m_byId;
    TaskSections m_sections;
    DragAutoScroll* m_autoScroll;
    bool m_painted = false;
    bool m_updatePending = false;
    int m_changedAtOnce = 0; // tasks since the last update
};
