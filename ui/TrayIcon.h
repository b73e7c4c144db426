// The program's icon in the system tray.
#pragma once

#include "net/UpdateInformation.h"

#include <QSystemTrayIcon>

#include <boost/shared_ptr.hpp>

#include <chrono>
#include <memory>

class MainWindow;
class NetServices;
class QAction;
class QMenu;

/// The way back to a closed window, and out of the program. Has the service asked for a newer
/// version, once, and announces it. Interface thread.
class TrayIcon : public QSystemTrayIcon
{
    Q_OBJECT

public:
    /// `window`: not owned; it has to outlive the icon.
    explicit TrayIcon(MainWindow* window, QObject* parent = nullptr);
    ~TrayIcon() override;
    Q_DISABLE_COPY_MOVE(TrayIcon)

    /// Shows the window after that time if no tray has appeared by then: it would be out of reach.
    void showWindowUnlessHosted(std::chrono::milliseconds patience);

    void retranslateUI();

private Q_SLOTS:
    void _onActivated(QSystemTrayIcon::ActivationReason reason);
    void _onShow();
    void _onExport();
    void _onDonate();
    void _onPreferences();
    void _onAbout();
    void _onMessageClicked();
    void _onUpdatesChecked(const UpdateInformation& information);

private:
    void _createMenu();

    std::unique_ptr<QMenu> m_menu;
    MainWindow* m_window;
    QAction* m_showAction = nullptr;
    QAction* m_exportAction = nullptr;
    QAction* m_donateAction = nullptr;      ///< null where it is not offered
    QAction* m_preferencesAction = nullptr; ///< null where it is not offered
    QAction* m_aboutAction = nullptr;
    QAction* m_exitAction = nullptr;
    boost::shared_ptr<NetServices> m_netServices;
};
