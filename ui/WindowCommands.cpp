#include "ui/WindowCommands.h"

#include "app/base/dynamic_singleton.h"
#include "app/core/GroupName.h"
#include "app/core/TaskCore.h"
#include "taskdb/export/ExportDialog.h"
#include "ui/ActionsHelper.h"
#include "ui/BackupsDialog.h"
#include "ui/FocusGroupListWidget.h"
#include "ui/FocusGroupWidget.h"
#include "ui/HistoryView.h"
#include "ui/Shortcuts.h"
#include "ui/TaskListWidget.h"
#include "ui/controls/AboutDialog.h"
#include "ui/controls/Prefs.h"
#include "ui/icons/IconsHelper.h"
#include "ui/icons/PictureIcon.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QShortcut>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

ActionsHelper& actions()
{
    return dynamic_singleton<ActionsHelper>::inst();
}

} // namespace

/// A command with its keys. Those of the task list are pressed there and only named here.
struct WindowCommands::Entry
{
    enum EKeys
    {
        ofWindow,
        ofList
    };

    const char* text; ///< null where it is made when it is shown
    EKeys whose;
    QList<QKeySequence> keys;
    void (*run)(WindowCommands&);
    bool (*isEnabled)(const WindowCommands&) = [](const WindowCommands&) { return true; };
    const char* picture = "";
    QString (*makeText)() = nullptr;
    QList<QKeySequence> alsoInList = {};
};

const QList<WindowCommands::Entry>& WindowCommands::_entries()
{
    using C = WindowCommands;
    static const auto anySelected = [](const C& c) { return c.m_list->rows().selectedCount() > 0; };
    static const auto anyTask = [](const C& c) { return c.m_list->rows().count() > 0; };
    static const auto ownGroup = [](const C& c) {
        return TaskStorage::isCustom(c.m_groups->groupId());
    };
    static const QList<Entry> entries = {
        {QT_TR_NOOP("New task"),
         Entry::ofWindow,
         {shortcuts::newTask},
         [](C&) { actions().newTask()->trigger(); },
         [](const C&) { return actions().newTask()->isEnabled(); },
         ":/icons/toolbar_new",
         {},
         {Qt::SHIFT | Qt::Key_Return}},
        {QT_TR_NOOP("Edit task"),
         Entry::ofWindow,
         {shortcuts::editTask},
         [](C&) { actions().editTask()->trigger(); },
         [](const C&) { return actions().editTask()->isEnabled(); },
         ":/icons/toolbar_edit",
         {},
         {Qt::Key_Return}},
        {QT_TR_NOOP("Leave the form"),
         Entry::ofList,
         {Qt::Key_Escape},
         [](C& c) { c.m_list->endEditing(); },
         [](const C& c) { return c.m_list->rows().edited() >= 0; }},
        {QT_TR_NOOP("Tick or untick"),
         Entry::ofList,
         {Qt::Key_Space},
         [](C& c) { c.m_list->tickTasks(); },
         anySelected},
        {QT_TR_NOOP("Delete tasks"),
         Entry::ofList,
         {Qt::Key_Delete},
         [](C& c) { c.m_list->deleteTasks(); },
         anySelected},
        {QT_TR_NOOP("Clean up"),
         Entry::ofWindow,
         {},
         [](C&) { actions().cleanup()->trigger(); },
         [](const C&) { return actions().cleanup()->isEnabled(); },
         ":/icons/toolbar_cleanup"},
        {nullptr,
         Entry::ofWindow,
         {shortcuts::undo},
         [](C& c) { c.m_history->undo(); },
         [](const C&) { return taskHistory().canUndo(); },
         "",
         &HistoryView::undoText},
        {nullptr,
         Entry::ofWindow,
         {shortcuts::redo, shortcuts::redoToo},
         [](C& c) { c.m_history->redo(); },
         [](const C&) { return taskHistory().canRedo(); },
         "",
         &HistoryView::redoText},
        {QT_TR_NOOP("Select all tasks"),
         Entry::ofList,
         {Qt::CTRL | Qt::Key_A},
         [](C& c) { c.m_list->selectAll(); },
         anyTask},
        {QT_TR_NOOP("Copy tasks"),
         Entry::ofList,
         {Qt::CTRL | Qt::Key_C},
         [](C& c) { c.m_list->copyTasks(); },
         anySelected},
        {QT_TR_NOOP("Paste lines as tasks"),
         Entry::ofList,
         {Qt::CTRL | Qt::Key_V},
         [](C& c) { c.m_list->pasteTasks(); },
         [](const C& c) { return !TaskStorage::isArchive(c.m_groups->groupId()); }},
        {QT_TR_NOOP("Next and previous task"),
         Entry::ofList,
         {Qt::Key_Down, Qt::Key_Up},
         [](C& c) { c._press(Qt::Key_Down); },
         anyTask},
        {QT_TR_NOOP("A page down and up"),
         Entry::ofList,
         {Qt::Key_PageDown, Qt::Key_PageUp},
         [](C& c) { c._press(Qt::Key_PageDown); },
         anyTask},
        {QT_TR_NOOP("First and last task"),
         Entry::ofList,
         {Qt::Key_Home, Qt::Key_End},
         [](C& c) { c._press(Qt::Key_Home); },
         anyTask},
        {QT_TR_NOOP("Extend or shrink the selection"),
         Entry::ofList,
         {Qt::SHIFT | Qt::Key_Down, Qt::SHIFT | Qt::Key_Up},
         [](C& c) { c._press(Qt::SHIFT | Qt::Key_Down); },
         anyTask},
        {QT_TR_NOOP("Edit the task that was found"),
         Entry::ofList,
         {Qt::CTRL | Qt::Key_Return},
         [](C&) {},
         [](const C&) { return false; }},
        {QT_TR_NOOP("Add group"), Entry::ofWindow, {}, [](C& c) { c.m_groups->_onAddGroup(); }},
        {QT_TR_NOOP("Edit group"),
         Entry::ofWindow,
         {},
         [](C& c) { c.m_groups->_onEditGroup(); },
         ownGroup},
        {QT_TR_NOOP("Remove group"),
         Entry::ofWindow,
         {},
         [](C& c) { c.m_groups->_onRemoveGroup(); },
         ownGroup},
        {QT_TR_NOOP("Empty the Trash"),
         Entry::ofWindow,
         {},
         [](C& c) { c.m_groups->_onEmptyTrash(); },
         [](const C&) {
             return !taskStorage().getGroup(TaskStorage::ms_trashId).tasks().isEmpty();
         }},
        {QT_TR_NOOP("Menu of the group"),
         Entry::ofList,
         {Qt::SHIFT | Qt::Key_F10, Qt::Key_Menu},
         [](C& c) { c.m_groups->showMenu(); }},
        {QT_TR_NOOP("Previous group"),
         Entry::ofWindow,
         {shortcuts::previousGroup},
         [](C& c) { c._moveGroup(-1); },
         [](const C& c) { return c.m_groups->currentIndex() > 0; }},
        {QT_TR_NOOP("Next group"),
         Entry::ofWindow,
         {shortcuts::nextGroup},
         [](C& c) { c._moveGroup(1); },
         [](const C& c) { return c.m_groups->currentIndex() + 1 < c.m_groups->entries().size(); }},
        {QT_TR_NOOP("Find"),
         Entry::ofWindow,
         {shortcuts::find},
         [](C& c) { c._find(FindPanel::Everything); }},
        {QT_TR_NOOP("Commands and their keys"),
         Entry::ofWindow,
         {shortcuts::commands},
         [](C& c) { c._find(FindPanel::Commands); }},
        {QT_TR_NOOP("Switch between normal and compact view"),
         Entry::ofWindow,
         {},
         [](C&) { actions().switchView()->trigger(); }},
        {QT_TR_NOOP("Export…"),
         Entry::ofWindow,
         {shortcuts::exportTasks},
         [](C& c) { ExportDialog::showMe(c.m_window, {}); }},
        {QT_TR_NOOP("Backups…"), Entry::ofWindow, {}, [](C& c) { c._showBackups(); }},
        {QT_TR_NOOP("Preferences…"),
         Entry::ofWindow,
         {},
         [](C& c) { prefs::showDialog(c.m_window); }},
        {QT_TR_NOOP("About"), Entry::ofWindow, {}, [](C& c) { AboutDialog::showMe(c.m_window); }},
        {QT_TR_NOOP("Hide the window"),
         Entry::ofWindow,
         {shortcuts::hideWindow},
         [](C& c) { c.m_window->close(); }},
        // Not every desktop has a tray to quit from.
        {QT_TR_NOOP("Quit"),
         Entry::ofWindow,
         {shortcuts::quit},
         [](C&) { QCoreApplication::quit(); }},
    };
    return entries;
}

WindowCommands::WindowCommands(QWidget* window, TaskListWidget* list, FocusGroupListWidget* groups)
    : QObject(window)
    , m_window(window)
    , m_list(list)
    , m_groups(groups)
    , m_history(new HistoryView(list, groups, this))
{
    const auto add = [this](const QKeySequence& keys, const auto& command) {
        connect(new QShortcut(keys, m_window), &QShortcut::activated, this, command);
    };
    for (const Entry& entry : _entries()) {
        for (const QKeySequence& keys : entry.keys) {
            if (entry.whose == Entry::ofWindow)
                add(keys, [this, run = entry.run] { run(*this); });
        }
    }
    for (int i = 0; i < shortcuts::groups; ++i)
        add(shortcuts::nthGroup(i), [this, i] { m_groups->setCurrentIndex(i); });
}

QList<Command> WindowCommands::all()
{
    QList<Command> commands;
    for (const Entry& entry : _entries()) {
        QStringList keys;
        for (const QKeySequence& sequence : entry.keys + entry.alsoInList)
            keys += shortcuts::textOf(sequence);
        Command command;
        command.text = entry.text ? tr(entry.text) : entry.makeText();
        command.keys = keys.join(u", "_s);
        if (*entry.picture)
            command.icon = icons::fromPictures({QString::fromLatin1(entry.picture)});
        command.enabled = entry.isEnabled(*this);
        command.run = [this, run = entry.run] { run(*this); };
        commands += command;
    }
    for (qsizetype i = 0; i < m_groups->entries().size(); ++i) {
        const FocusGroup group = m_groups->entries().at(i)->group();
        Command command;
        command.text = shownGroupName(group);
        command.keys = shortcuts::textOf(shortcuts::nthGroup(i));
        command.icon = dynamic_singleton<IconsHelper>::inst().groupIcon(
            group.id(), group.iconName(), group.tasks().isEmpty());
        command.group = group.id();
        command.run = [this, id = group.id()] { m_groups->setCurrentGroup(id); };
        commands += command;
    }
    return commands;
}

void WindowCommands::_find(FindPanel::EMode mode)
{
    // One that has closed may still wait for its end.
    if (m_panel && !m_panel->isHidden()) {
        m_panel->setMode(mode);
        return;
    }
    m_panel = new FindPanel(
        mode, [this] { return all(); }, m_list);
    connect(m_panel, &FindPanel::taskChosen, this, &WindowCommands::_showTask);
}

/// In the group that is shown, if it is there, else in the first that has it.
void WindowCommands::_showTask(const TodoTask::Id& id, bool edit)
{
    const auto holds = [&id](const FocusGroup::Id& group) {
        return taskStorage().getGroup(group).contains(id);
    };
    const QList<FocusGroupWidget*>& entries = m_groups->entries();
    const auto found = std::find_if(entries.cbegin(), entries.cend(),
                                    [&](const auto* entry) { return holds(entry->groupId()); });
    if (!holds(m_groups->groupId())) {
        if (found == entries.cend())
            return;
        m_groups->setCurrentGroup((*found)->groupId());
    }
    m_list->showTasks({id});
    m_list->setFocus(Qt::OtherFocusReason);
    if (edit)
        m_list->editTask();
}

/// As if in the list, which an open form would keep from most keys.
void WindowCommands::_press(QKeyCombination key)
{
    m_list->endEditing();
    QKeyEvent event(QEvent::KeyPress, key.key(), key.keyboardModifiers());
    QCoreApplication::sendEvent(m_list, &event);
}

void WindowCommands::_moveGroup(int by)
{
    m_groups->setCurrentIndex(m_groups->currentIndex() + by);
}

void WindowCommands::_showBackups()
{
    BackupsDialog::showMe(
        m_window, [this](const BackupContent& content) { m_history->bringBack(content); },
        [this](const BackupContent& content) { m_history->returnTo(content); });
}
