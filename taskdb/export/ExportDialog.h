// The dialog that exports groups of tasks as a text file.
#pragma once

#include "app/base/CSafeFileUpdate.h"
#include "app/language/SingleDialog.h"
#include "taskdb/FocusGroup.h"

class DialogHeader;
class QListWidget;
class QListWidgetItem;
class QPushButton;

/// Lists all groups and writes the checked ones to a file that the user names. There is one at a
/// time; it deletes itself once it is closed or hidden.
class ExportDialog : public SingleDialog<ExportDialog>
{
    Q_OBJECT

public:
    /// Brings the open dialog to the front, or else opens one and returns at once. Only the
    /// current group starts checked; with the null identifier, every group that has tasks does.
    static void showMe(QWidget* parent, const FocusGroup::Id& currentGroupId);

    explicit ExportDialog(QWidget* parent, const FocusGroup::Id& currentGroupId);

    void retranslateUI() override;

    /// The checked groups in the order of the list.
    [[nodiscard]] QList<FocusGroup::Id> selectedGroups() const;

public Q_SLOTS:
    /// Asks for the file, writes it and has the desktop open it. The dialog stays open when the
    /// user cancels or the file cannot be written.
    void accept() override;

private Q_SLOTS:
    void _onSelectAll();
    void _onSelectNone();
    void _onItemChanged(QListWidgetItem* item);

private:
    void _createLayout();
    void _createList();
    void _fillGroupList(const FocusGroup::Id& currentGroupId);
    void _addGroup(const FocusGroup& group, const FocusGroup::Id& currentGroupId);
    void _retranslateGroups();
    void _setAll(Qt::CheckState state);
    void _updateButtons();
    [[nodiscard]] SafeWriteResult _write(const QString& path) const;

    DialogHeader* m_header = nullptr;
    QListWidget* m_groupList = nullptr;
    QPushButton* m_selectAllButton = nullptr;
    QPushButton* m_selectNoneButton = nullptr;
    QPushButton* m_exportButton = nullptr;
    QPushButton* m_cancelButton = nullptr;
};
