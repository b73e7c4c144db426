#include "ui/FocusGroupListWidget.h"

#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "ui/FocusGroupWidget.h"
#include "ui/controls/FancyScrollbar.h"
#include "ui/controls/StyleHelper.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {
TaskStorage& store()
{
    return *dynamic_singleton<TaskCore>::inst().storage();
}
} // namespace

FocusGroupListWidget::FocusGroupListWidget(QWidget* parent)
    : QScrollArea(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setAutoFillBackground(false);
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setVerticalScrollBar(new FancyScrollbar(Qt::Vertical, this));
    setHorizontalScrollBar(new FancyScrollbar(Qt::Horizontal, this));
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

    connect(&store(), &TaskStorage::groupChanged, this, &FocusGroupListWidget::_onGroupChanged);
    setCurrentGroup(TaskStorage::ms_inboxId);
}

void FocusGroupListWidget::_loadGroups()
{
    QList<FocusGroup::Id> ids;
    store().enumGroups(ids);
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
    m_current = -1;
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        const bool found = m_entries.at(i)->groupId() == id;
        m_entries.at(i)->setSelected(found);
        if (found)
            m_current = i;
    }
    if (m_current >= 0) {
        const QMargins margins = m_mainLayout->contentsMargins();
        ensureWidgetVisible(m_entries.at(m_current), margins.left(), margins.bottom());
    }
    Q_EMIT activated(id);
}

void FocusGroupListWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), dynamic_singleton<fancy::StyleHelper>::inst().color(11));
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
        entry->reload();
    if (m_trashPending)
        return;
    // Tasks that end up in the Trash are told of by the group they left only.
    m_trashPending = true;
    QMetaObject::invokeMethod(this, &FocusGroupListWidget::_refreshTrash, Qt::QueuedConnection);
}

void FocusGroupListWidget::_refreshTrash()
{
    m_trashPending = false;
    m_byId.value(TaskStorage::ms_trashId)->reload();
}
