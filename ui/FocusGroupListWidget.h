// The panel of groups.
#pragma once

#include "taskdb/FocusGroup.h"
#include "ui/ScrollPanel.h"

#include <QHash>

class FocusGroupWidget;
class QVBoxLayout;

/// Lists Inbox, the custom groups in the store's order, Completed and Trash, and tracks which is
/// current.
class FocusGroupListWidget : public ScrollPanel
{
    Q_OBJECT
    Q_PROPERTY(FocusGroup::Id groupId READ groupId WRITE setCurrentGroup NOTIFY activated)

public:
    explicit FocusGroupListWidget(QWidget* parent = nullptr);

    [[nodiscard]] FocusGroup::Id groupId() const { return m_groupId; }
    void setCurrentGroup(const FocusGroup::Id& id);

    /// The entries in display order.
    [[nodiscard]] const QList<FocusGroupWidget*>& entries() const { return m_entries; }

Q_SIGNALS:
    /// Another group became the current one.
    void activated(const FocusGroup::Id& id);
    /// The current group's properties changed.
    void changed(const FocusGroup::Id& id);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void _loadGroups();
    void _addEntry(const FocusGroup::Id& id, QVBoxLayout* layout);
    [[nodiscard]] qsizetype _findWidgetByPos(const QPoint& point) const;
    void _onGroupChanged(const FocusGroup::Id& id);
    void _refreshEntries();

    QList<FocusGroupWidget*> m_entries;
    FocusGroup::Id m_groupId;
    QVBoxLayout* m_mainLayout;
    QVBoxLayout* m_customLayout;
    QHash<FocusGroup::Id, FocusGroupWidget*> m_byId;
    bool m_refreshPending = false;
};
