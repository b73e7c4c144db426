// The program from start to end: what comes up, in which order, and how it is taken down.
#include "app/ExitDeadline.h"
#include "app/FontFinder.h"
#include "app/MVRApp.h"
#include "app/SignalHandler.h"
#include "app/StartupRefusal.h"
#include "app/base/LogHelper.h"
#include "app/base/PathHelper.h"
#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/UserMetrics.h"
#include "app/core/TaskCore.h"
#include "app/language/Language.h"
#include "net/NetServices.h"
#include "net/taskapi/TaskApiClient.h"
#include "ui/ActionsHelper.h"
#include "ui/DragHelper.h"
#include "ui/MainWindow.h"
#include "ui/TrayIcon.h"
#include "ui/controls/StyleHelper.h"
#include "ui/icons/IconsHelper.h"

#include <QFile>
#include <QThreadPool>
#include <QWidget>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
const QString applicationId = u"FAC47CC7-8B64-42cd-87FA-6D4A0C5149BF"_s;
constexpr int showTimeoutMs = 5000;
/// Trays come up at log-in as the program does.
constexpr auto trayPatience = 10s;
/// For requests that do not end, should the exit deadline have found no thread.
constexpr int requestPatienceMs = 1000;
bool hasLog = false;

/// Prefers X11 while it lives, unless the user chose a platform; the programs that we start choose
/// for themselves.
class PlatformPreference
{
public:
    PlatformPreference()
        : m_set(qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
                !qEnvironmentVariableIsEmpty("DISPLAY"))
    {
        if (m_set)
            qputenv("QT_QPA_PLATFORM", "xcb;wayland");
    }
    ~PlatformPreference()
    {
        if (m_set)
            qunsetenv("QT_QPA_PLATFORM");
    }
    Q_DISABLE_COPY_MOVE(PlatformPreference)

private:
    bool m_set;
};

std::unique_ptr<MVRApp> makeApplication(int& argc, char** argv)
{
    const PlatformPreference preference;
    auto app = std::make_unique<MVRApp>(applicationId, argc, argv);
    // By this name desktops find what belongs to the program's windows.
    QGuiApplication::setDesktopFileName(ProductHelper::productId());
    return app;
}

/// Cuts the program off from the system's plug-ins, but for those that it cannot do without.
void dropLibraryPaths()
{
    // Wayland loads what makes and frames windows with the first of them.
    if (QGuiApplication::platformName().startsWith("wayland"_L1)) {
        QWidget first;
        first.show();
    }
    QCoreApplication::setLibraryPaths({});
}

/// Whether there is anything that an unforeseen end has to save.
bool isLoaded = false;

void saveEverything()
{
    if (!isLoaded)
        return;
    if (dynamic_singleton<TaskCore>::exists())
        taskStorage().saveStateRequest();
    MVRApp::saveLoadedSettings();
    if (dynamic_singleton<logging::LogHelper>::exists())
        dynamic_singleton<logging::LogHelper>::inst().flush();
}

void loadSettings()
{
    auto& settings = dynamic_singleton<ProgramSettings>::inst();
    const QString path = PathHelper::settingsFile();
    if (!settings.load(path))
        settings.resetToDefaults();
    // No language is stored before the user has chosen one.
    if (!QFile::exists(path))
        settings.uiLanguage.clear();
    settings.upgradeSettings();
    taskStorage().setBackups(settings.backups);
    dynamic_singleton<UserMetrics>::inst().load(PathHelper::metricsFile());
    if (settings.uiLanguage.isEmpty())
        Language::followDesktop();
    else
        Language::loadLanguageSettings();
}

/// A data folder that is out of reach counts as a database that does not load.
void refuseUnlockable(const QString& folder)
{
    if (PathHelper::isCutOff(PathHelper::databaseFile()))
        StartupRefusal::show(TaskStorage::ReadFailure);
    else
        StartupRefusal::showUnlockable(folder);
}

void endNetwork()
{
    taskapi::TaskApiClient::shared()->abortRequests();
    NetServices::destroyShared();
    // Requests that still run use the log.
    QThreadPool::globalInstance()->waitForDone(requestPatienceMs);
}

void destroySingletons()
{
    dynamic_singleton<UserMetrics>::destroy();
    dynamic_singleton<ProgramSettings>::destroy();
    dynamic_singleton<IconsHelper>::destroy();
    dynamic_singleton<DragHelper>::destroy();
    dynamic_singleton<ActionsHelper>::destroy();
    dynamic_singleton<fancy::StyleHelper>::destroy();
    destroyLog();
}
} // namespace

/// When an X display goes away, the toolkit ends the process through exit(): what the user entered
/// is written even then. This stands in for the system's, whose handlers run too late: network
/// threads crash on what has been taken from them by that time. The store itself stays, since this
/// may have come while it was at work.
extern "C" void exit(int code)
{
    saveEverything();
    std::fflush(nullptr);
    std::_Exit(code);
}

int main(int argc, char** argv)
{
    SignalHandler::surviveBrokenPipes();
    initLanguages();
    FontFinder fontFinder;
    const std::unique_ptr<MVRApp> app = makeApplication(argc, argv);
    QApplication::setWindowIcon(dynamic_singleton<IconsHelper>::inst().appIcon(0, QString()));
    dropLibraryPaths();
    if (app->isRunning()) {
        app->sendMessage(u"show"_s, showTimeoutMs);
        return 0;
    }

    const SignalHandler signalHandler;
    if (!app->isFirst()) {
        refuseUnlockable(app->unlockableFolder());
        return 1;
    }
    fontFinder.findApplicationFont();
    if (!hasLog)
        hasLog = dynamic_singleton<logging::LogHelper>::inst().init(PathHelper::logFile());
    MVR_LOG_INFO(u"======================= Startup ======================="_s);
    const TaskStorage::ErrorType error = dynamic_singleton<TaskCore>::inst().init(
        [first = app.get()] { return first->renewLocks(); });
    if (error != TaskStorage::NoError) {
        StartupRefusal::show(error);
        return 1;
    }
    loadSettings();
    isLoaded = true;

    auto window = std::make_unique<MainWindow>();
    const bool isHidden = !dynamic_singleton<ProgramSettings>::inst().openWindowOnStartup;
    if (!isHidden)
        window->show();
    app->setActivationWindow(window.get(), true);
    auto trayIcon = std::make_unique<TrayIcon>(window.get());
    trayIcon->show();
    window->setTrayIcon(trayIcon.get());
    if (isHidden)
        trayIcon->showWindowUnlessHosted(trayPatience);
    QApplication::setQuitOnLastWindowClosed(false);
    const int exitCode = QApplication::exec();

    MVR_LOG_DEBUG(u"app.exec() returns "_s + QString::number(exitCode));
    trayIcon.reset();
    window.reset();
    MVRApp::saveLoadedSettings();
    MVR_LOG_INFO(u"Shutdown"_s);
    dynamic_singleton<TaskCore>::destroy();
    dynamic_singleton<logging::LogHelper>::inst().flush();
    armExitDeadline(exitCode);
    endNetwork();
    dynamic_singleton<logging::LogHelper>::inst().flush();
    destroySingletons();
    return exitCode;
}
