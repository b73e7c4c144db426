// All that can be done in the window, by key or by name.
#pragma once

#include "ui/find/Command.h"
#include "ui/find/FindPanel.h"

#include <QKeyCombination>
#include <QObject>
#include <QPointer>

class FocusGroupListWidget;
class HistoryView;
class TaskListWidget;

/// Makes the shortcuts of the window, and opens the panel that lists the commands with all keys and
/// finds tasks.
class WindowCommands : public QObject
{
    Q_OBJECT

public:
    /// The window becomes the parent; the others lie in it.
    WindowCommands(QWidget* window, TaskListWidget* list, FocusGroupListWidget* groups);

    /// In the order in which they are listed, the groups among them; in the language of the moment.
    [[nodiscard]] QList<Command> all();

private:
    struct Entry;

    [[nodiscard]] static const QList<Entry>& _entries();
    void _find(FindPanel::EMode mode);
    void _showTask(const TodoTask::Id& id, bool edit);
    void _press(QKeyCombination key);
    void _moveGroup(int by);
    void _showBackups();

    QWidget* m_window;
    TaskListWidget* m_list;
    FocusGroupListWidget* m_groups;
    HistoryView* m_history;
    QPointer<FindPanel> m_panel;
};
