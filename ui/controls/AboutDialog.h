// What the program is, and whether there is a newer one.
#pragma once

#include "app/language/SingleDialog.h"

class LinkLabel;
class QPushButton;

/// There is one at a time; it deletes itself once it is closed.
class AboutDialog : public SingleDialog<AboutDialog>
{
    Q_OBJECT

public:
    /// Activates the dialog that is open, or else opens one, and returns at once.
    static void showMe(QWidget* parent);

    explicit AboutDialog(QWidget* parent);

    void retranslateUI() override;

private Q_SLOTS:
    void _onLinkClicked(const QString& link);
    void _onDonateClicked();

private:
    [[nodiscard]] QLayout* _createTexts();
    [[nodiscard]] QLayout* _createButtons();
    void _showLicence();

    LinkLabel* m_webSite = nullptr;
    LinkLabel* m_qt = nullptr;
    LinkLabel* m_licence = nullptr;
    LinkLabel* m_update = nullptr; ///< null where no newer version is known
    QPushButton* m_donateButton = nullptr;
    QPushButton* m_okButton = nullptr;
};
