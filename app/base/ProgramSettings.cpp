#include "app/base/ProgramSettings.h"

#include "app/base/PathHelper.h"
#include "app/base/Platform.h"
#include "app/base/ProductHelper.h"

#include <QFile>
#include <QLocale>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {
constexpr auto oldCompactViewKey = "CompactView"_L1;
constexpr auto oldMainWindowFrameKey = "WindowRect"_L1;
constexpr auto oldGroupPanelWidthKey = "GroupPanelWidth"_L1;

// No slash: all of them belong to the file's general section.
constexpr auto compactViewKey = "general.compact_view"_L1;
constexpr auto mainWindowFrameKey = "general.main_window_frame"_L1;
constexpr auto groupPanelWidthKey = "general.group_panel_width"_L1;
constexpr auto openWindowOnStartupKey = "general.open_window_on_startup"_L1;
constexpr auto runOnSystemStartupKey = "general.run_on_system_startup"_L1;
constexpr auto showNotificationsKey = "general.show_notifications"_L1;
constexpr auto backupsKey = "general.backups"_L1;
constexpr auto uiLanguageKey = "general.ui_language"_L1;
constexpr auto versionKey = "version"_L1;

constexpr auto fallbackLanguage = "en_US"_L1;
} // namespace

ProgramSettings::ProgramSettings()
{
    resetToDefaults();
}

bool ProgramSettings::load(const QString& path)
{
    const QSettings file(path, QSettings::IniFormat);
    compactView = file.value(oldCompactViewKey, false).toBool();
    mainWindowFrame = file.value(oldMainWindowFrameKey, QRect()).toRect();
    groupPanelWidth = file.value(oldGroupPanelWidthKey, defaultGroupPanelWidth).toInt();

    compactView = file.value(compactViewKey, compactView).toBool();
    mainWindowFrame = file.value(mainWindowFrameKey, mainWindowFrame).toRect();
    groupPanelWidth = file.value(groupPanelWidthKey, groupPanelWidth).toInt();

    openWindowOnStartup = file.value(openWindowOnStartupKey, true).toBool();
    runOnSystemStartup = file.value(runOnSystemStartupKey, true).toBool();
    showNotifications = file.value(showNotificationsKey, true).toBool();
    uiLanguage = file.value(uiLanguageKey, fallbackLanguage).toString();
    version = file.value(versionKey, QString()).toString();
    backups = file.value(backupsKey, true).toBool();
    return true;
}

void ProgramSettings::save(const QString& path) const
{
    const bool isNew = !QFile::exists(path);
    QSettings file(path, QSettings::IniFormat);
    file.setValue(compactViewKey, compactView);
    file.setValue(mainWindowFrameKey, mainWindowFrame);
    file.setValue(groupPanelWidthKey, groupPanelWidth);
    file.setValue(openWindowOnStartupKey, openWindowOnStartup);
    file.setValue(runOnSystemStartupKey, runOnSystemStartup);
    file.setValue(showNotificationsKey, showNotifications);
    file.setValue(uiLanguageKey, uiLanguage);
    file.setValue(versionKey, ProductHelper::productVersion().toString());
    // A key for users who edit the file: it appears only when they have put it there.
    if (!backups || file.contains(backupsKey))
        file.setValue(backupsKey, backups);
    file.sync();
    // QSettings makes the file as the umask says.
    if (isNew)
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
}

void ProgramSettings::resetToDefaults()
{
    compactView = false;
    mainWindowFrame = QRect();
    groupPanelWidth = defaultGroupPanelWidth;
    openWindowOnStartup = true;
    runOnSystemStartup = true;
    showNotifications = true;
    dateFormat = QLocale::system().dateFormat(QLocale::ShortFormat);
    uiLanguage.clear();
    version.clear();
    backups = true;
}

void ProgramSettings::upgradeSettings()
{
    const ProductVersion writer(version);
    if (writer.isValid() && !(writer < ProductHelper::productVersion()))
        return;
    platform::setProgramToRunAtStartup(PathHelper::executablePath(), runOnSystemStartup);
}
