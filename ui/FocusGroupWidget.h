// One entry of the group panel.
#pragma once

#include "taskdb/FocusGroup.h"

#include <QWidget>

class QLabel;

/// Shows a group's icon and its name, cut to fit. Lets the mouse through to the panel.
class FocusGroupWidget : public QWidget
{
    Q_OBJECT

public:
    FocusGroupWidget(const FocusGroup::Id& id, QWidget* parent);

    [[nodiscard]] FocusGroup::Id groupId() const { return m_id; }
    /// The record as the store has it; read when it is asked for. A copy taken at every change
    /// would have the store duplicate parts of the group at the next.
    [[nodiscard]] const FocusGroup& group() const;
    /// The group changed in the store.
    void invalidate() { m_stale = true; }
    /// Brings what is shown into line with the group.
    void refresh();

    [[nodiscard]] bool selected() const { return (m_state & selectedBit) != 0; }
    void setSelected(bool selected);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    static constexpr uint selectedBit = 1;
    static constexpr uint hoverBit = 8;

    void _setElidedName();
    void _setIcon();

    FocusGroup::Id m_id;
    mutable FocusGroup m_group;
    mutable bool m_stale = false;
    uint m_state = 0;
    bool m_shownEmpty = true;
    QLabel* m_icon;
    QLabel* m_name;
};
