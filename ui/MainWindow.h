// The program's one window.
#pragma once

#include "app/language/LocalizedDialog.h"
#include "taskdb/FocusGroup.h"

#include <QPointer>

class CommitStrip;
class FancySplitter;
class FocusGroupListWidget;
class QPropertyAnimation;
class QScreen;
class TaskListWidget;
class TrayIcon;
struct CommitFailure;

/// The group panel on the left and, on the right, the task list above its toolbar; in the compact
/// view the right side covers all. Closing only hides it. Place and view lie in the settings.
class MainWindow : public LocalizedDialog
{
    Q_OBJECT
    /// For animations; without visible effect.
    Q_PROPERTY(float sidepanelWidth READ sidepanelWidth WRITE setSidepanelWidth)

public:
    explicit MainWindow(QWidget* parent = nullptr);
    /// Puts the place of the window and the width of the panel into the settings.
    ~MainWindow() override;

    void show();
    /// Moves the window into the lower right corner of the screen.
    void setPosition();

    /// Always 0.
    [[nodiscard]] float sidepanelWidth() const { return 0; }
    void setSidepanelWidth(float share);
    void retranslateUI() override;

    /// Has the tray icon follow the language; null for none. Not owned.
    void setTrayIcon(TrayIcon* trayIcon);

    [[nodiscard]] TaskListWidget* taskList() const { return m_taskList; }
    [[nodiscard]] FocusGroupListWidget* groupList() const { return m_groupList; }

Q_SIGNALS:
    /// The window was moved.
    void widgetMoved();

protected:
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;

private Q_SLOTS:
    void _onNewTask();
    void _onEditTask();
    void _onCleanup();
    void _onSwitchView();
    void _onGroupSelected(const FocusGroup::Id& id);
    void _onGroupChanged(const FocusGroup::Id& id);
    void _onCommitStateChanged(const CommitFailure& failure);

private:
    void _createLayout();
    void _connectActions();
    void _watchCommits();
    void _removeCommitStrip();
    void _restoreGeometry();
    void _setView(bool compact, bool immediate);
    void _animatePane(int fromLeft, int toLeft);
    void _onSetViewAnimationFinished();
    void _centreOn(const QScreen& screen);
    [[nodiscard]] int _panelWidth() const;
    void _showPanel();
    void _takePanelWidth();
    void _storePanelWidth();

    FocusGroupListWidget* m_groupList = nullptr;
    TaskListWidget* m_taskList = nullptr;
    FancySplitter* m_splitter = nullptr;
    QWidget* m_rightPane = nullptr;
    QPointer<TrayIcon> m_trayIcon;
    QPointer<CommitStrip> m_commitStrip; // only while changes cannot be saved
    QWidget* m_toolbar = nullptr;
    QPropertyAnimation* m_animation = nullptr;
    int m_panelWidth = 0;      // as the user chose it
    int m_shownPanelWidth = 0; // brought into range, as the window set it last
};
