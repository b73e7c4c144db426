#include "ui/FocusGroupListWidget.h"

#include "app/core/TaskCore.h"
#include "ui/FocusGroupWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>

FocusGroupListWidget::FocusGroupListWidget(QWidget* parent)
    : ScrollPanel(parent)
{
    // The keys belong to the task list, also after a click here.
    setFocusPolicy(Qt::NoFocus);
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
    setCurrentGroup(TaskStorage::ms_inboxId);
}

void FocusGroupListWidget::_loadGroups()
{
    QList<FocusGroup::Id> ids;
    taskStorage().enumGroups(ids);
    _addEntry(TaskStorage::ms_inboxId, m_mainLayout);
    m_mainLayout->addLayout(m_customLayout);
    for (const FocusGroup::Id& id : std::as_const(ids)) {
        if (TaskStorage::isCustom(id))
            _addEntry(id, m_customLayout);
    }
    m_mainLayout->addStretch(1);
    _addEntry(TaskStorage::ms_completedId, m_mainLayout);
    _addEntry(TaskStorage::ms_trashId, m_mainLayout);
}

void FocusGroupListWidget::_addEntry(const FocusGroup::Id& id, QVBoxLayout* layout)
{
    auto* entry = new FocusGroupWidget(id, this);
    layout->addWidget(entry);
    m_entries.append(entry);
    m_byId.insert(id, entry);
}

void FocusGroupListWidget::setCurrentGroup(const FocusGroup::Id& id)
{
    if (id.isNull() || id == m_groupId)
        return;
    m_groupId = id;
    for (FocusGroupWidget* entry : std::as_const(m_entries))
        entry->setSelected(entry->groupId() == id);
    if (FocusGroupWidget* current = m_byId.value(id)) {
        const QMargins margins = m_mainLayout->contentsMargins();
        ensureWidgetVisible(current, margins.left(), margins.bottom());
    }
    Q_EMIT activated(id);
}

void FocusGroupListWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const qsizetype pressed = _findWidgetByPos(event->position().toPoint());
    if (pressed >= 0)
        setCurrentGroup(m_entries.at(pressed)->groupId());
}

void FocusGroupListWidget::keyPressEvent(QKeyEvent* /*event*/)
{
    // The keys belong to the task list.
}

qsizetype FocusGroupListWidget::_findWidgetByPos(const QPoint& point) const
{
    const QPoint inContent =
        point + QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        if (m_entries.at(i)->geometry().contains(inContent))
            return i;
    }
    return -1;
}

void FocusGroupListWidget::_onGroupChanged(const FocusGroup::Id& id)
{
    if (FocusGroupWidget* entry = m_byId.value(id))
        entry->invalidate();
    // Tasks that end up in the Trash are told of by the group they left only.
    m_byId.value(TaskStorage::ms_trashId)->invalidate();
    if (m_refreshPending)
        return;
    // Bulk changes tell of every single task: look once, when they are done.
    m_refreshPending = true;
    QMetaObject::invokeMethod(this, &FocusGroupListWidget::_refreshEntries, Qt::QueuedConnection);
}

void FocusGroupListWidget::_refreshEntries()
{
    m_refreshPending = false;
    for (FocusGroupWidget* entry : std::as_const(m_entries))
        entry->refresh();
}
