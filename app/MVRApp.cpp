#include "app/MVRApp.h"

#include "app/base/LogHelper.h"
#include "app/base/PathHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/UserMetrics.h"
#include "app/core/TaskCore.h"
#include "ui/controls/ApplicationPalette.h"

#include <QSessionManager>

using namespace Qt::StringLiterals;

namespace {
boost::shared_ptr<TaskStorage> loadedStorage()
{
    if (!dynamic_singleton<TaskCore>::exists())
        return {};
    return dynamic_singleton<TaskCore>::inst().storage();
}
} // namespace

MVRApp::MVRApp(const QString& id, int& argc, char** argv)
    : QtSingleApplication(id, argc, argv, PathHelper::getPath(PathHelper::UserDataFolder, true))
{
    guard(PathHelper::realPath(PathHelper::databaseFile()));
    fancy::replaceDarkPalette();
    // Direct: the session manager takes the return from the signal as the end of saving.
    connect(this, &QGuiApplication::commitDataRequest, this, &MVRApp::commitData,
            Qt::DirectConnection);
    connect(this, &QGuiApplication::saveStateRequest, this, &MVRApp::_onSaveState,
            Qt::DirectConnection);
}

bool MVRApp::event(QEvent* event)
{
    // The desktop may turn dark at any time.
    if (event->type() == QEvent::ApplicationPaletteChange)
        fancy::replaceDarkPalette();
    return QtSingleApplication::event(event);
}

void MVRApp::saveLoadedSettings()
{
    if (dynamic_singleton<UserMetrics>::exists())
        dynamic_singleton<UserMetrics>::inst().save(PathHelper::metricsFile());
    if (dynamic_singleton<ProgramSettings>::exists())
        dynamic_singleton<ProgramSettings>::inst().save(PathHelper::settingsFile());
}

void MVRApp::commitData(QSessionManager& manager)
{
    MVR_LOG_DEBUG(u"in"_s);
    saveLoadedSettings();
    if (const boost::shared_ptr<TaskStorage> storage = loadedStorage())
        storage->commitDataRequest(manager);
    MVR_LOG_DEBUG(u"out"_s);
    if (dynamic_singleton<logging::LogHelper>::exists())
        dynamic_singleton<logging::LogHelper>::inst().flush();
}

void MVRApp::_onSaveState()
{
    saveLoadedSettings();
    if (const boost::shared_ptr<TaskStorage> storage = loadedStorage())
        storage->saveStateRequest();
}
