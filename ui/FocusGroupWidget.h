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
    [[nodiscard]] const FocusGroup& group() const { return m_group; }
    /// Reads the group anew from the store.
    void reload();

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
    FocusGroup m_group;
    uint m_state = 0;
    bool m_shownEmpty = true;
    QLabel* m_icon;
    QLabel* m_name;
};
