#include "ui/FocusGroupListWidget.h"

#include "app/base/DayWatch.h"
#include "app/base/ProductHelper.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/GroupName.h"
#include "app/core/TaskCore.h"
#include "taskdb/export/ExportDialog.h"
#include "ui/DragAutoScroll.h"
#include "ui/DragHelper.h"
#include "ui/DragPicture.h"
#include "ui/EditGroupDialog.h"
#include "ui/FocusGroupWidget.h"
#include "ui/GroupPanelAccessible.h"
#include "ui/RunningDrag.h"
#include "ui/Shortcuts.h"
#include "ui/controls/Prompt.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QVBoxLayout>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int manyChanges = 1000; // of tasks, in one turn of the event loop

bool confirmed(QWidget* parent, const QString& text, QMessageBox::StandardButton yes,
               QMessageBox::StandardButton no)
{
    Prompt::Question question;
    question.icon = QMessageBox::Question;
    question.title = ProductHelper::productDisplayName();
    question.text = text;
    question.buttons = yes | no;
    question.defaultButton = no;
    return Prompt::ask(parent, question) == yes;
}

} // namespace

FocusGroupListWidget::FocusGroupListWidget(QWidget* parent)
    : ScrollPanel(parent)
    , m_background(u":/image/backgroundpattern"_s)
    , m_autoScroll(new DragAutoScroll(this))
{
    installGroupPanelAccessible();
    // The keys belong to the task list, also after a click here.
    setFocusPolicy(Qt::NoFocus);
    setAcceptDrops(true);
    setAccessibleName(tr("Groups"));

    auto* content = new QWidget;
    QPalette colours = content->palette();
    colours.setBrush(QPalette::Window, Qt::transparent);
    content->setPalette(colours);
    m_mainLayout = new QVBoxLayout(content);
    m_mainLayout->setContentsMargins(15, 7, 15, 7);
    m_mainLayout->setSpacing(0);
    m_customLayout = new QVBoxLayout;
    m_customLayout->setContentsMargins(0, 10, 0, 10);
    m_customLayout->setSpacing(0);
    _loadGroups();
    setWidget(content);

    connect(&taskStorage(), &TaskStorage::groupChanged, this,
            &FocusGroupListWidget::_onGroupChanged);
    connect(&taskStorage(), &TaskStorage::taskChanged, this, &FocusGroupListWidget::_onTaskChanged);
    // Another entry is then below a drag that stands still.
    connect(m_autoScroll, &DragAutoScroll::scrolled, this, &FocusGroupListWidget::_dragTo);
    connect(new DayWatch(this), &DayWatch::dayChanged, this, &FocusGroupListWidget::_onDayChanged);
    setCurrentGroup(TaskStorage::ms_inboxId);
}

void FocusGroupListWidget::_loadGroups()
{
    _addEntry(TaskStorage::ms_inboxId, m_mainLayout);
    m_mainLayout->addLayout(m_customLayout);
    m_mainLayout->addStretch(1);
    _addEntry(TaskStorage::ms_completedId, m_mainLayout);
    _addEntry(TaskStorage::ms_trashId, m_mainLayout);
    _addCustomGroups();
    _numberEntries();
}

void FocusGroupListWidget::_addCustomGroups()
{
    QList<FocusGroup::Id> ids;
    taskStorage().enumGroups(ids);
    for (const FocusGroup::Id& id : std::as_const(ids)) {
        if (TaskStorage::isCustom(id))
            _addGroup(id);
    }
}

/// Custom groups stand between Inbox and Completed, in the order in which they are added.
FocusGroupWidget* FocusGroupListWidget::_addGroup(const FocusGroup::Id& id)
{
    if (id.isNull())
        return nullptr;
    FocusGroupWidget* entry = _addEntry(id, m_customLayout);
    m_entries.move(m_entries.size() - 1, m_entries.size() - 3);
    return entry;
}

FocusGroupWidget* FocusGroupListWidget::_addEntry(const FocusGroup::Id& id, QVBoxLayout* layout)
{
    auto* entry = new FocusGroupWidget(id, this);
    layout->addWidget(entry);
    // A layout shows a new widget at the next event only, and gives no room to hidden ones.
    entry->show();
    m_entries.append(entry);
    m_byId.insert(id, entry);
    return entry;
}

void FocusGroupListWidget::_removeEntry(FocusGroupWidget* entry)
{
    m_entries.removeOne(entry);
    m_byId.remove(entry->groupId());
    m_customLayout->removeWidget(entry);
    entry->hide();
    entry->deleteLater();
}

/// After entries came, went or changed places.
void FocusGroupListWidget::_numberEntries()
{
    m_current = -1;
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        if (m_entries.at(i)->groupId() == m_groupId)
            m_current = i;
        m_entries.at(i)->setShortcut(shortcuts::textOf(shortcuts::nthGroup(i)));
    }
}

void FocusGroupListWidget::refresh()
{
    const FocusGroup::Id current = std::exchange(m_groupId, FocusGroup::Id());
    const QList<FocusGroupWidget*> old = m_entries;
    for (FocusGroupWidget* entry : old) {
        if (TaskStorage::isCustom(entry->groupId()))
            _removeEntry(entry);
    }
    _addCustomGroups();
    widget()->layout()->activate();
    _numberEntries();
    _scheduleUpdate();
    setCurrentGroup(m_byId.contains(current) ? current : TaskStorage::ms_inboxId);
}

void FocusGroupListWidget::setCurrentGroup(const FocusGroup::Id& id)
{
    if (id.isNull() || id == m_groupId)
        return;
    m_groupId = id;
    m_current = -1;
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        const bool found = m_entries.at(i)->groupId() == id;
        m_entries.at(i)->setSelected(found);
        if (found)
            m_current = i;
    }
    if (m_current >= 0)
        _makeVisible(m_entries.at(m_current));
    Q_EMIT activated(id);
}

void FocusGroupListWidget::setCurrentIndex(qsizetype index)
{
    if (index >= 0 && index < m_entries.size())
        setCurrentGroup(m_entries.at(index)->groupId());
}

void FocusGroupListWidget::_makeVisible(FocusGroupWidget* entry)
{
    const QMargins margins = m_mainLayout->contentsMargins();
    if (widget()) {
        // A new entry has its place only after that.
        widget()->layout()->activate();
        QCoreApplication::sendPostedEvents(viewport(), QEvent::LayoutRequest);
        ensureWidgetVisible(entry, margins.left(), margins.bottom());
    }
}

void FocusGroupListWidget::paintEvent(QPaintEvent* event)
{
    ScrollPanel::paintEvent(event);
    if (std::exchange(m_painted, true))
        return;
    // Counting waits until the window has been painted.
    _scheduleUpdate();
}

FocusGroupWidget* FocusGroupListWidget::_entryAt(const QPoint& point) const
{
    const QPoint inContent =
        point + QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
    for (FocusGroupWidget* entry : m_entries) {
        if (entry->geometry().contains(inContent))
            return entry;
    }
    return nullptr;
}

void FocusGroupListWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_leftDown = true;
    m_pressPoint = event->position().toPoint();
    m_pressed = _entryAt(m_pressPoint);
    if (!m_pressed)
        return;
    // Becoming the current one, the entry may be scrolled away from the point.
    m_hotSpot = m_pressed->mapFrom(viewport(), m_pressPoint);
    setCurrentGroup(m_pressed->groupId());
}

void FocusGroupListWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_leftDown = false;
}

void FocusGroupListWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const FocusGroupWidget* entry = _entryAt(event->position().toPoint());
    if (!entry)
        _onAddGroup();
    else if (TaskStorage::isCustom(entry->groupId()))
        _onEditGroup();
}

void FocusGroupListWidget::keyPressEvent(QKeyEvent* /*event*/)
{
    // The keys belong to the task list.
}

/// The entry that this move of the mouse begins to drag, or null.
FocusGroupWidget* FocusGroupListWidget::_dragSource(const QMouseEvent* event) const
{
    const QPoint way = event->position().toPoint() - m_pressPoint;
    const bool dragging = dynamic_singleton<DragHelper>::inst().isDragging();
    if (!m_leftDown || dragging || way.manhattanLength() < QApplication::startDragDistance())
        return nullptr;
    return m_pressed && TaskStorage::isCustom(m_pressed->groupId()) ? m_pressed.data() : nullptr;
}

void FocusGroupListWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (FocusGroupWidget* entry = _dragSource(event))
        _startDrag(entry);
}

void FocusGroupListWidget::_startDrag(FocusGroupWidget* entry)
{
    const auto group = boost::make_shared<DragGroup>(DragGroup::GroupDrag);
    group->setGroupId(entry->groupId());
    RunningDrag drag(this, group);
    drag.setPicture(dragPicture(1, [entry](qsizetype /*number*/) { return entry; }), m_hotSpot);
    const bool moved = drag.exec();
    if (drag.isOrphaned())
        return;
    if (moved)
        refresh();
    // The release of the button went to the drag.
    m_leftDown = false;
}

/// Anything of ours is let in, even onto an entry that refuses it: the drag may move on to others.
void FocusGroupListWidget::dragEnterEvent(QDragEnterEvent* event)
{
    m_drag = dynamic_singleton<DragHelper>::inst().dragOf(event->mimeData());
    event->setAccepted(m_drag != nullptr);
    if (!m_drag)
        return;
    event->setDropAction(_dragTo(event->position().toPoint()) ? Qt::MoveAction : Qt::IgnoreAction);
}

void FocusGroupListWidget::dragMoveEvent(QDragMoveEvent* event)
{
    const QPoint point = event->position().toPoint();
    m_autoScroll->follow(point);
    event->setDropAction(Qt::MoveAction);
    event->setAccepted(_dragTo(point));
}

void FocusGroupListWidget::dragLeaveEvent(QDragLeaveEvent* /*event*/)
{
    _endDragOver();
}

void FocusGroupListWidget::dropEvent(QDropEvent* event)
{
    _endDragOver();
    const auto drag = dynamic_singleton<DragHelper>::inst().dragOf(event->mimeData());
    FocusGroupWidget* entry = _entryAt(event->position().toPoint());
    // Asked once more: the store may have changed since the drag came over the entry.
    const bool taken = drag && entry && entry->accepts(*drag);
    event->setAccepted(taken);
    if (!taken)
        return;
    entry->take(*drag);
    event->acceptProposedAction();
}

/// Marks the entry at the point if it would take what is dragged. Returns whether it would.
bool FocusGroupListWidget::_dragTo(const QPoint& point)
{
    FocusGroupWidget* entry = m_drag ? _entryAt(point) : nullptr;
    if (entry != m_dragEntry) {
        if (m_dragEntry)
            m_dragEntry->setDragOver(false);
        m_dragEntry = entry;
        // Asked once an entry: it goes through all the tasks dragged.
        if (entry)
            entry->setDragOver(entry->accepts(*m_drag));
    }
    return entry && entry->isDragOver();
}

/// The drag has left, or was dropped.
void FocusGroupListWidget::_endDragOver()
{
    m_autoScroll->stop();
    m_drag.reset();
    if (m_dragEntry)
        m_dragEntry->setDragOver(false);
    m_dragEntry.clear();
}

void FocusGroupListWidget::contextMenuEvent(QContextMenuEvent* event)
{
    m_menuEntry = _entryAt(viewport()->mapFromGlobal(event->globalPos()));
    _buildMenu();
    m_menu->popup(event->globalPos());
}

void FocusGroupListWidget::showMenu()
{
    m_menuEntry = m_current < 0 ? nullptr : m_entries.at(m_current);
    QPoint place = mapToGlobal(QPoint(0, 0));
    if (m_menuEntry && isVisible()) {
        _makeVisible(m_menuEntry);
        place = m_menuEntry->mapToGlobal(m_menuEntry->rect().bottomLeft());
    }
    _buildMenu();
    m_menu->popup(place);
    // It was opened by a key: the next ones choose.
    const QList<QAction*> actions = m_menu->actions();
    const auto first = std::find_if(actions.cbegin(), actions.cend(), [](const QAction* action) {
        return action->isVisible() && action->isEnabled() && !action->isSeparator();
    });
    m_menu->setActiveAction(*first);
}

void FocusGroupListWidget::_buildMenu()
{
    if (m_menu)
        m_menu->deleteLater();
    m_menu = new QMenu(this);
    const FocusGroup::Id id = m_menuEntry ? m_menuEntry->groupId() : FocusGroup::Id();
    const bool custom = m_menuEntry && TaskStorage::isCustom(id);
    // Both act on the current group, whichever entry the menu is opened on.
    const bool editable = TaskStorage::isCustom(m_groupId);

    QAction* edit = m_menu->addAction(tr("Edit"), this, &FocusGroupListWidget::_onEditGroup);
    QFont bold = edit->font();
    bold.setBold(true);
    edit->setFont(bold);
    edit->setVisible(custom);
    edit->setEnabled(editable);
    m_menu->addAction(tr("Add group"), this, &FocusGroupListWidget::_onAddGroup)
        ->setVisible(!TaskStorage::isArchive(id));
    QAction* empty = m_menu->addAction(tr("Empty"), this, &FocusGroupListWidget::_onEmptyTrash);
    empty->setVisible(id == TaskStorage::ms_trashId);
    if (id == TaskStorage::ms_trashId) {
        // In a menu an ampersand marks a key.
        const QString name = shownGroupName(m_menuEntry->group()).replace(u'&', "&&"_L1);
        empty->setText(tr("Empty %1").arg(name));
        empty->setEnabled(!taskStorage().getGroup(id).tasks().isEmpty());
    }
    m_menu->addSeparator();
    QAction* remove = m_menu->addAction(tr("Remove"), this, &FocusGroupListWidget::_onRemoveGroup);
    remove->setVisible(custom);
    remove->setEnabled(editable);
    m_menu->addSeparator();
    m_menu->addAction(tr("Export..."), this, &FocusGroupListWidget::_onExport)
        ->setShortcut(shortcuts::exportTasks);
}

void FocusGroupListWidget::_onAddGroup()
{
    EditGroupDialog dialog(window());
    if (dialog.exec() != QDialog::Accepted)
        return;
    FocusGroup::Id id;
    {
        const HistoryStep step(taskHistory(), {EAction::addGroup});
        id = taskStorage().createGroup(dialog.groupName(), dialog.iconName());
    }
    if (!_addGroup(id))
        return;
    _numberEntries();
    _scheduleUpdate();
    setCurrentGroup(id);
}

void FocusGroupListWidget::_onEditGroup()
{
    if (!TaskStorage::isCustom(m_groupId) || m_current < 0)
        return;
    const FocusGroup::Id id = m_groupId;
    const FocusGroup record = m_entries.at(m_current)->group();
    EditGroupDialog dialog(record.name(), record.iconName(), window());
    if (dialog.exec() != QDialog::Accepted || !m_byId.contains(id))
        return;
    m_byId.value(id)->setProperties(dialog.groupName(), dialog.iconName());
    Q_EMIT changed(id);
}

void FocusGroupListWidget::_onRemoveGroup()
{
    const FocusGroup::Id id = m_groupId;
    if (id.isNull() || !TaskStorage::isCustom(id))
        return;
    if (!confirmed(window(), tr("Do you really want to remove the selected group?"),
                   QMessageBox::Yes, QMessageBox::No))
        return;
    if (FocusGroupWidget* entry = m_byId.value(id))
        _removeEntry(entry);
    // The list leaves the group before it goes: a running edit still finds its task there.
    setCurrentGroup(TaskStorage::ms_inboxId);
    {
        const HistoryStep step(
            taskHistory(),
            {EAction::removeGroup, id, {}, 0, shownGroupName(taskStorage().getGroup(id))});
        taskStorage().removeGroup(id);
    }
    // The store emits nothing for the Trash, which received the group's tasks.
    _scheduleUpdate();
    _numberEntries();
}

void FocusGroupListWidget::_onEmptyTrash()
{
    if (!confirmed(window(),
                   tr("Once your tasks leave the trash group you can't get them back. Continue?"),
                   QMessageBox::Ok, QMessageBox::Cancel))
        return;
    const FocusGroup::Id& trash = TaskStorage::ms_trashId;
    const HistoryStep step(
        taskHistory(),
        {EAction::emptyTrash, trash, {}, taskStorage().getGroup(trash).tasks().size()});
    taskStorage().emptyTrash();
}

void FocusGroupListWidget::_onExport()
{
    const FocusGroup::Id id = m_menuEntry ? m_menuEntry->groupId() : FocusGroup::Id();
    m_menuEntry = nullptr;
    ExportDialog::showMe(window(), id);
}

void FocusGroupListWidget::_onHighlightGroups(const TodoTask::Id& taskId)
{
    for (FocusGroupWidget* entry : std::as_const(m_entries))
        entry->setHighlighted(entry->group().contains(taskId));
}

void FocusGroupListWidget::_onTaskChanged(const TodoTask::Id& id)
{
    if (id.isNull())
        return;
    const TaskSections::Change change = m_sections.update(id);
    if (change.before == change.after)
        return;
    // Of so many at once, counting anew costs less than asking every group about each.
    if (++m_changedAtOnce > manyChanges) {
        _invalidateAll();
        return;
    }
    _scheduleUpdate();
    for (FocusGroupWidget* entry : std::as_const(m_entries)) {
        if (!entry->isUncounted() && entry->group().contains(id))
            entry->recount(change);
    }
}

void FocusGroupListWidget::_onGroupChanged(const FocusGroup::Id& id)
{
    if (FocusGroupWidget* entry = m_byId.value(id))
        entry->invalidate();
    _scheduleUpdate();
}

void FocusGroupListWidget::_onDayChanged()
{
    m_sections.clear();
    _invalidateAll();
}

void FocusGroupListWidget::_invalidateAll()
{
    for (FocusGroupWidget* entry : std::as_const(m_entries))
        entry->invalidate();
    _scheduleUpdate();
}

/// Bulk changes tell of every single task: what is shown changes once, when they are done.
void FocusGroupListWidget::_scheduleUpdate()
{
    if (m_updatePending || !m_painted)
        return;
    m_updatePending = true;
    QMetaObject::invokeMethod(this, &FocusGroupListWidget::_updateEntries, Qt::QueuedConnection);
}

void FocusGroupListWidget::_updateEntries()
{
    m_updatePending = false;
    m_changedAtOnce = 0;
    // The store emits nothing for the Trash when it receives tasks.
    FocusGroupWidget* trash = m_byId.value(TaskStorage::ms_trashId);
    if (trash->hasOtherSize())
        trash->invalidate();
    for (FocusGroupWidget* entry : std::as_const(m_entries)) {
        if (entry->isUncounted())
            entry->refresh(m_sections);
    }
}

void FocusGroupListWidget::changeEvent(QEvent* event)
{
    ScrollPanel::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        setAccessibleName(tr("Groups"));
}
