// The dialog for the user's preferences.
#pragma once

#include "app/language/LocalizedDialog.h"

#include <QStringList>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTabWidget;

/// Every change takes effect at once. Modal, by exec().
class PrefsDialog : public LocalizedDialog
{
    Q_OBJECT

public:
    explicit PrefsDialog(QWidget* parent = nullptr);
    /// Writes the settings file if anything was touched.
    ~PrefsDialog() override;
    Q_DISABLE_COPY_MOVE(PrefsDialog)

    void retranslateUI() override;

private Q_SLOTS:
    void _notificationsStateChanged(int state);
    void _runAtStartupStateChanged(int state);
    void _openWindowStateChanged(int state);
    void _onLanguageChanged(int index);

private:
    [[nodiscard]] QWidget* _createGeneralTab();
    [[nodiscard]] QLayout* _createLanguageRow();
    void _fillLanguages();
    void _onLanguageActivated(int index);

    bool m_isChanged = false;
    const bool m_canNotify;
    QTabWidget* m_tabs = nullptr;
    QCheckBox* m_notifications = nullptr;
    QCheckBox* m_runAtStartup = nullptr;
    QCheckBox* m_openWindow = nullptr;
    QLabel* m_languageLabel = nullptr;
    QComboBox* m_languages = nullptr;
    QStringList m_languageCodes; ///< as in the combo box
    QPushButton* m_okButton = nullptr;
};
