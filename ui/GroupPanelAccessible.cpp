#include "ui/GroupPanelAccessible.h"

#include "ui/FocusGroupListWidget.h"
#include "ui/FocusGroupWidget.h"
#include "ui/controls/AccessibleFactory.h"

#include <QAccessibleWidget>

namespace {

/// Its name tells the counts; the labels inside have nothing to add.
class GroupEntryAccessible final : public QAccessibleWidget
{
public:
    explicit GroupEntryAccessible(FocusGroupWidget* entry)
        : QAccessibleWidget(entry, QAccessible::ListItem)
    {
    }

    int childCount() const override { return 0; }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = _entry()->selected();
        return state;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override
    {
        for (QObject* above = widget()->parent(); above; above = above->parent()) {
            auto* panel = qobject_cast<FocusGroupListWidget*>(above);
            if (panel && name == pressAction())
                panel->setCurrentGroup(_entry()->groupId());
        }
    }

private:
    [[nodiscard]] FocusGroupWidget* _entry() const
    {
        return static_cast<FocusGroupWidget*>(widget());
    }
};

} // namespace

void installGroupPanelAccessible()
{
    installAccessible<FocusGroupListWidget, QAccessibleWidget, QAccessible::List>();
    installAccessible<FocusGroupWidget, GroupEntryAccessible>();
}
