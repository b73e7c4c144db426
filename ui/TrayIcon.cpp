#include "ui/TrayIcon.h"

#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/notify/NotifyHelper.h"
#include "net/NetServices.h"
#include "taskdb/export/ExportDialog.h"
#include "ui/MainWindow.h"
#include "ui/controls/AboutDialog.h"
#include "ui/controls/Prefs.h"
#include "ui/controls/WindowHelper.h"
#include "ui/icons/IconsHelper.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QMenu>
#include <QTimer>
#include <QUrl>

using namespace std::chrono_literals;

namespace {
/// So that the check does not compete with the window's first frame for processor time.
constexpr auto checkDelay = 500ms;
} // namespace

TrayIcon::TrayIcon(MainWindow* window, QObject* parent)
    : QSystemTrayIcon(parent)
    , m_menu(std::make_unique<QMenu>())
    , m_window(window)
    , m_netServices(NetServices::shared())
{
    setIcon(dynamic_singleton<IconsHelper>::inst().trayIcon({}));
    setToolTip(ProductHelper::productDisplayName());
    _createMenu();
    retranslateUI();
    setContextMenu(m_menu.get());
    connect(this, &QSystemTrayIcon::activated, this, &TrayIcon::_onActivated);
    connect(this, &QSystemTrayIcon::messageClicked, this, &TrayIcon::_onMessageClicked);
    connect(m_netServices.get(), &NetServices::updatesChecked, this, &TrayIcon::_onUpdatesChecked);
    m_netServices->checkForUpdates(checkDelay);
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::_createMenu()
{
    const auto add = [this](void (TrayIcon::*slot)()) {
        auto* action = new QAction(m_menu.get());
        connect(action, &QAction::triggered, this, slot);
        m_menu->addAction(action);
        return action;
    };
    m_showAction = add(&TrayIcon::_onShow);
    QFont font = m_showAction->font();
    font.setBold(true);
    m_showAction->setFont(font);
    m_menu->addSeparator();
    m_exportAction = add(&TrayIcon::_onExport);
    if (ProductHelper::donationEnabled()) {
        m_donateAction = add(&TrayIcon::_onDonate);
        m_menu->addSeparator();
    }
    if (prefs::hasPrefsDialog())
        m_preferencesAction = add(&TrayIcon::_onPreferences);
    m_aboutAction = add(&TrayIcon::_onAbout);
    m_menu->addSeparator();
    m_exitAction = m_menu->addAction({}, QCoreApplication::instance(), &QCoreApplication::quit);
}

void TrayIcon::retranslateUI()
{
    m_showAction->setText(tr("Show %1").arg(ProductHelper::productDisplayName()));
    m_exportAction->setText(tr("Export..."));
    if (m_donateAction)
        m_donateAction->setText(tr("Donate..."));
    if (m_preferencesAction)
        m_preferencesAction->setText(tr("Preferences..."));
    m_aboutAction->setText(tr("About"));
    m_exitAction->setText(tr("Exit"));
}

void TrayIcon::showWindowUnlessHosted(std::chrono::milliseconds patience)
{
    QTimer::singleShot(patience, this, [this] {
        if (!isSystemTrayAvailable() && !m_window->isVisible())
            _onShow();
    });
}

void TrayIcon::_onActivated(ActivationReason reason)
{
    if (reason == Trigger)
        _onShow();
}

void TrayIcon::_onShow()
{
    windows::withdrawUnseen(*m_window);
    if (m_window->isMinimized())
        m_window->showNormal();
    else
        m_window->show();
    m_window->activateWindow();
}

void TrayIcon::_onExport()
{
    ExportDialog::showMe(m_window, {});
}

void TrayIcon::_onDonate()
{
    ProductHelper::donate(m_window);
}

void TrayIcon::_onPreferences()
{
    prefs::showDialog(m_window);
}

void TrayIcon::_onAbout()
{
    AboutDialog::showMe(m_window);
}

void TrayIcon::_onMessageClicked()
{
    QDesktopServices::openUrl(QUrl(ProductHelper::productUrl()));
}

void TrayIcon::_onUpdatesChecked(const UpdateInformation& information)
{
    const auto entry = information.products().constFind(ProductHelper::productId());
    if (!information.valid() || entry == information.products().cend() || !entry->valid() ||
        !(ProductHelper::productVersion() < entry->version()))
        return;
    ProductHelper::setLatestProductVersion(entry->version());
    if (!dynamic_singleton<ProgramSettings>::inst().showNotifications)
        return;
    const QString name = ProductHelper::productDisplayName();
    NotifyHelper().show(tr("%1 update").arg(name),
                        tr("%1 %2 is available! Check out the About section for a download link.")
                            .arg(name, entry->version().toString()));
}
