// The program's one window.
#pragma once

#include "app/language/LocalizedDialog.h"
#include "taskdb/FocusGroup.h"

class FancySplitter;
class FocusGroupListWidget;
class TaskListWidget;

/// The group panel on the left and, on the right, the task list above its toolbar. Closing only
/// hides it.
class MainWindow : public LocalizedDialog
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);

    void show();
    void retranslateUI() override;

    [[nodiscard]] TaskListWidget* taskList() const { return m_taskList; }
    [[nodiscard]] FocusGroupListWidget* groupList() const { return m_groupList; }

Q_SIGNALS:
    /// The window was moved.
    void widgetMoved();

protected:
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;

private Q_SLOTS:
    void _onNewTask();
    void _onEditTask();
    void _onCleanup();
    void _onSwitchView();
    void _onGroupSelected(const FocusGroup::Id& id);
    void _onGroupChanged(const FocusGroup::Id& id);

private:
    void _createLayout();
    void _connectActions();
    void _restoreGeometry();
    void _setView(bool compact);

    FocusGroupListWidget* m_groupList = nullptr;
    TaskListWidget* m_taskList = nullptr;
    FancySplitter* m_splitter = nullptr;
    QWidget* m_rightPane = nullptr;
    bool m_compact = false;
    int m_groupPanelWidth = 190;
};
