// The dialog for going back to an earlier version of the database.
#pragma once

#include "app/language/SingleDialog.h"
#include "taskdb/BackupReader.h"

class DialogHeader;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// Lists the versions as they are read and hands on what the user wants of one of them; changes
/// nothing itself. There is one at a time; it deletes itself once it is closed or hidden.
class BackupsDialog : public SingleDialog<BackupsDialog>
{
    Q_OBJECT

public:
    using Handler = std::function<void(const BackupContent&)>;

    /// Brings the open dialog to the front, or else opens one and returns at once. The handlers
    /// get what the signals tell.
    static void showMe(QWidget* parent, const Handler& bringBack, const Handler& goBack);

    explicit BackupsDialog(QWidget* parent, const Handler& bringBack, const Handler& goBack);
    ~BackupsDialog() override;
    Q_DISABLE_COPY_MOVE(BackupsDialog)

    void retranslateUI() override;

Q_SIGNALS:
    // The dialog has closed by then.

    /// The tasks of the version that are missing now are to come back.
    void bringBackWanted(const BackupContent& content);
    /// The store is to become what the version holds.
    void returnWanted(const BackupContent& content);

private:
    using Wish = void (BackupsDialog::*)(const BackupContent&);

    void _createLayout();
    void _createList();
    [[nodiscard]] QPushButton* _addButton(QLayout* layout);
    void _addVersion(const BackupVersion& version);
    [[nodiscard]] static QString _trouble(const BackupVersion& version);
    void _onAllRead();
    void _showRow(int row);
    void _showNote();
    void _updateButtons();
    /// The row of the chosen version, or -1.
    [[nodiscard]] int _chosenRow() const;
    void _load(Wish wish);
    void _onLoaded(const BackupContent& content);

    QPointer<BackupReader> m_reader;
    QList<BackupVersion> m_versions; ///< as in the list
    bool m_isReading = true;
    Wish m_wish = nullptr; ///< what to tell once the chosen version is loaded
    DialogHeader* m_header = nullptr;
    QTreeWidget* m_list = nullptr;
    QTreeWidgetItem* m_note = nullptr; ///< the last row, which says how far the reading is
    QPushButton* m_bringBackButton = nullptr;
    QPushButton* m_returnButton = nullptr;
    QPushButton* m_closeButton = nullptr;
};
