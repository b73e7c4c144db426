#include "taskdb/export/ExportDialog.h"

#include "app/core/GroupName.h"
#include "app/core/TaskCore.h"
#include "taskdb/ExportText.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "ui/controls/ChosenFile.h"
#include "ui/controls/DialogHeader.h"
#include "ui/controls/FancyScrollbar.h"
#include "ui/icons/IconsHelper.h"

#include <QDesktopServices>
#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int idRole = Qt::UserRole + 1;
constexpr QSize smallestSize(400, 350);
constexpr QSize iconSize(20, 20);
constexpr QMargins buttonMargins(8, 10, 8, 10);
constexpr int buttonSpacing = 6;
constexpr int rowSpacing = 3;

bool canBeChecked(const QListWidgetItem* item)
{
    return item->flags().testFlag(Qt::ItemIsEnabled);
}

FocusGroup::Id groupOf(const QListWidgetItem* item)
{
    return FocusGroup::Id::fromString(item->data(idRole).toString());
}

/// As the dialog lists and exports them: Completed and Trash come last.
QList<FocusGroup::Id> groupsInOrder()
{
    QList<FocusGroup::Id> ids;
    taskStorage().enumGroups(ids);
    std::stable_partition(ids.begin(), ids.end(),
                          [](const FocusGroup::Id& id) { return !TaskStorage::isArchive(id); });
    return ids;
}

} // namespace

void ExportDialog::showMe(QWidget* parent, const FocusGroup::Id& currentGroupId)
{
    showOne(parent, currentGroupId);
}

ExportDialog::ExportDialog(QWidget* parent, const FocusGroup::Id& currentGroupId)
    : SingleDialog(parent)
{
    setWindowModality(Qt::WindowModal);
    setSizeGripEnabled(true);
    setMinimumSize(smallestSize);
    _createLayout();
    _fillGroupList(currentGroupId);
    ExportDialog::retranslateUI();
    _updateButtons();
    connect(m_groupList, &QListWidget::itemChanged, this, &ExportDialog::_onItemChanged);
    m_groupList->setFocus(Qt::OtherFocusReason);
}

void ExportDialog::_createLayout()
{
    m_header = new DialogHeader(this);
    _createList();

    m_selectAllButton = new QPushButton(this);
    m_selectNoneButton = new QPushButton(this);
    m_exportButton = new QPushButton(this);
    m_exportButton->setDefault(true);
    m_cancelButton = new QPushButton(this);
    connect(m_selectAllButton, &QPushButton::clicked, this, &ExportDialog::_onSelectAll);
    connect(m_selectNoneButton, &QPushButton::clicked, this, &ExportDialog::_onSelectNone);
    connect(m_exportButton, &QPushButton::clicked, this, &ExportDialog::accept);
    connect(m_cancelButton, &QPushButton::clicked, this, &ExportDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(buttonMargins);
    buttons->setSpacing(buttonSpacing);
    buttons->addWidget(m_selectAllButton);
    buttons->addWidget(m_selectNoneButton);
    buttons->addStretch();
    buttons->addWidget(m_exportButton);
    buttons->addWidget(m_cancelButton);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_groupList, 1);
    layout->addLayout(buttons);
}

void ExportDialog::_createList()
{
    m_groupList = new QListWidget(this);
    m_groupList->setFrameShape(QFrame::NoFrame);
    m_groupList->setIconSize(iconSize);
    m_groupList->setSpacing(rowSpacing);
    // The check boxes select; a highlighted row beside them would mislead.
    m_groupList->setSelectionMode(QAbstractItemView::NoSelection);
    FancyScrollbar::installOn(m_groupList);
}

void ExportDialog::_fillGroupList(const FocusGroup::Id& currentGroupId)
{
    const QList<FocusGroup::Id> ids = groupsInOrder();
    for (const FocusGroup::Id& id : ids)
        _addGroup(taskStorage().getGroup(id), currentGroupId);
}

void ExportDialog::_addGroup(const FocusGroup& group, const FocusGroup::Id& currentGroupId)
{
    const bool isEmpty = group.tasks().isEmpty();
    const bool isCurrent = group.id() == currentGroupId;
    const bool isChecked = !isEmpty && (isCurrent || currentGroupId.isNull());
    const QIcon icon =
        dynamic_singleton<IconsHelper>::inst().groupIcon(group.id(), group.iconName(), isEmpty);
    auto* item = new QListWidgetItem(icon, shownGroupName(group), m_groupList);
    item->setData(idRole, group.id().toString());
    item->setFlags(isEmpty ? Qt::NoItemFlags
                           : Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(isChecked ? Qt::Checked : Qt::Unchecked);
    if (isCurrent)
        m_groupList->setCurrentItem(item);
}

void ExportDialog::retranslateUI()
{
    setWindowTitle(tr("Export"));
    m_header->setText(tr("<strong>Select the groups you want to export</strong>"));
    m_groupList->setAccessibleName(tr("Groups to export"));
    m_selectAllButton->setText(tr("Select all"));
    m_selectNoneButton->setText(tr("Select none"));
    m_exportButton->setText(tr("Export"));
    m_cancelButton->setText(tr("Cancel"));
    _retranslateGroups();
}

/// A group that is gone by now keeps the name it had.
void ExportDialog::_retranslateGroups()
{
    for (int row = 0; row < m_groupList->count(); ++row) {
        const FocusGroup group = taskStorage().getGroup(groupOf(m_groupList->item(row)));
        if (!group.id().isNull())
            m_groupList->item(row)->setText(shownGroupName(group));
    }
}

QList<FocusGroup::Id> ExportDialog::selectedGroups() const
{
    QList<FocusGroup::Id> ids;
    for (int row = 0; row < m_groupList->count(); ++row) {
        const QListWidgetItem* item = m_groupList->item(row);
        const FocusGroup::Id id = groupOf(item);
        if (canBeChecked(item) && item->checkState() == Qt::Checked && !id.isNull())
            ids += id;
    }
    return ids;
}

void ExportDialog::_onSelectAll()
{
    _setAll(Qt::Checked);
}

void ExportDialog::_onSelectNone()
{
    _setAll(Qt::Unchecked);
}

void ExportDialog::_setAll(Qt::CheckState state)
{
    {
        const QSignalBlocker blocker(m_groupList);
        for (int row = 0; row < m_groupList->count(); ++row) {
            if (canBeChecked(m_groupList->item(row)))
                m_groupList->item(row)->setCheckState(state);
        }
    }
    _updateButtons();
}

void ExportDialog::_onItemChanged(QListWidgetItem* /*item*/)
{
    _updateButtons();
}

void ExportDialog::_updateButtons()
{
    bool anyChecked = false;
    bool anyUnchecked = false;
    for (int row = 0; row < m_groupList->count(); ++row) {
        const QListWidgetItem* item = m_groupList->item(row);
        if (!canBeChecked(item))
            continue;
        (item->checkState() == Qt::Checked ? anyChecked : anyUnchecked) = true;
    }
    m_selectAllButton->setEnabled(anyUnchecked);
    m_selectNoneButton->setEnabled(anyChecked);
    m_exportButton->setEnabled(anyChecked);
}

void ExportDialog::accept()
{
    const QString path =
        ChosenFile::write(this,
                          {.caption = tr("Export to"),
                           .folder = QDir::homePath(),
                           .filter = tr("Text files (*.txt)"),
                           .suffix = u"txt"_s},
                          [this](const QString& chosen) { return _write(chosen); });
    if (path.isEmpty())
        return;
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    SingleDialog::accept();
}

SafeWriteResult ExportDialog::_write(const QString& path) const
{
    TaskStorageSnapsot snapshot(true);
    taskStorage().takeSnapshot(snapshot);
    return writeFileSafely(path, EFileAccess::umask, [&](QIODevice& device) {
        writeExportText(device, snapshot, selectedGroups());
        return true;
    });
}
