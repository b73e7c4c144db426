// One entry of the group panel.
#pragma once

#include "taskdb/FocusGroup.h"
#include "ui/TaskSections.h"

#include <QWidget>

class CountWidget;
class DragGroup;
class ElidedLabel;
class QLabel;

/// Shows a group's icon, its name, cut to fit, and how many open tasks it has by due date. Takes
/// tasks and other groups when the panel has one dropped on it. Lets the mouse through to the
/// panel.
class FocusGroupWidget : public QWidget
{
    Q_OBJECT

public:
    FocusGroupWidget(const FocusGroup::Id& id, QWidget* parent);

    [[nodiscard]] FocusGroup::Id groupId() const { return m_id; }
    /// The record as the store has it; read when it is asked for. A copy taken at every change
    /// would have the store duplicate parts of the group at the next.
    [[nodiscard]] const FocusGroup& group() const;
    /// The group changed in the store, its tasks perhaps as well.
    void invalidate();
    /// Whether the group changed since the last refresh().
    [[nodiscard]] bool isUncounted() const { return m_uncounted; }
    /// Whether the group has another number of tasks than at the last refresh().
    [[nodiscard]] bool hasOtherSize() const;
    /// Brings what is shown into line with the group.
    void refresh(TaskSections& sections);
    /// One task of the group counts in another section now.
    void recount(const TaskSections::Change& change);
    /// Gives the group these properties, in the store as well.
    void setProperties(const QString& name, const QString& iconName);

    [[nodiscard]] bool selected() const { return (m_state & selectedBit) != 0; }
    void setSelected(bool selected);
    [[nodiscard]] bool highlighted() const { return (m_state & highlightBit) != 0; }
    void setHighlighted(bool highlighted);
    /// Whether the entry shows that it would take what is dragged over it.
    [[nodiscard]] bool isDragOver() const { return (m_state & dragOverBit) != 0; }
    void setDragOver(bool over);
    /// Whether the group may have what is dragged: none of the tasks yet, or another custom group.
    [[nodiscard]] bool accepts(const DragGroup& drag) const;
    /// Moves or copies to the group what it takes, in the store, and tells the drag.
    void take(DragGroup& drag);
    /// The key that makes the group current, for the tool tip; empty for none.
    void setShortcut(const QString& shortcut) { m_shortcut = shortcut; }

Q_SIGNALS:
    void groupDragged(FocusGroupWidget* entry, const FocusGroup::Id& id);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    static constexpr uint selectedBit = 1;
    static constexpr uint dragOverBit = 4;
    static constexpr uint hoverBit = 8;
    static constexpr uint highlightBit = 16;

    void _setBit(uint bit, bool on);
    void _createLayout();
    [[nodiscard]] QString _shownName() const;
    void _setName();
    void _setAccessibleName();
    void _setIcon();
    void _showCounts();
    [[nodiscard]] QString _toolTip() const;
    void _takeTasks(DragGroup& drag);

    FocusGroup::Id m_id;
    mutable FocusGroup m_group;
    mutable bool m_recordOutdated = true;
    bool m_uncounted = true;
    uint m_state = 0;
    bool m_shownEmpty = true;
    qsizetype m_shownSize = 0;
    TaskSections::Counts m_counts = {};
    QString m_shortcut;
    QLabel* m_icon;
    ElidedLabel* m_name;
    CountWidget* m_countBar;
};
