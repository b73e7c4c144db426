// The dialog that names a group and gives it an icon.
#pragma once

#include "app/language/LocalizedDialog.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;
class SelectIconWidget;

/// For a new group, or for one that there is. Modal, by exec(); changes nothing itself: the caller
/// takes groupName() and iconName() once the dialog was accepted.
class EditGroupDialog : public LocalizedDialog
{
    Q_OBJECT

public:
    explicit EditGroupDialog(QWidget* parent);
    EditGroupDialog(const QString& name, const QString& iconName, QWidget* parent);

    /// The name as typed, with spaces around it if there are any, but on one line; the one put in
    /// as long as the user leaves it alone.
    [[nodiscard]] QString groupName() const;
    /// The key of the chosen icon; the one put in as long as the user chooses none, even if it is
    /// empty or not in the catalogue.
    [[nodiscard]] QString iconName() const;

    void retranslateUI() override;

public Q_SLOTS:
    /// Refuses a name without a visible character.
    void accept() override;

private Q_SLOTS:
    void _onIconChanged(const QString& key);
    void _onIconDoubleClicked(const QString& key);
    void _onTextEdited(const QString& text);

private:
    void _init();
    QWidget* _createPanel();
    QWidget* _createSeparator();
    QLayout* _createButtons();

    SelectIconWidget* m_icons = nullptr;
    QLineEdit* m_name = nullptr;
    int m_refusals = 0;
    /// Empty until the user types, and again after everything typed is erased.
    QString m_typedName;

    const bool m_isNew;
    const QString m_storedName;
    const QString m_storedIcon;
    bool m_iconChosen = false;
    QLabel* m_iconsTitle = nullptr;
    QLabel* m_nameTitle = nullptr;
    QPushButton* m_okButton = nullptr;
    QPushButton* m_cancelButton = nullptr;
};
