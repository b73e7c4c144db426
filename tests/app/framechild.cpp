// A small program on the application frame, for tests that need real processes.
// Reads commands on standard input, one a line, and tells on standard output what happens.
#include "app/ExitDeadline.h"
#include "app/QtSingleApplication.h"
#include "app/SignalHandler.h"
#include "app/base/LogHelper.h"
#include "app/base/UserMetrics.h"
#include "net/NetServices.h"

#include <QCloseEvent>
#include <QDialog>
#include <QFileInfo>
#include <QHostInfo>
#include <QNetworkProxy>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <netdb.h>
#include <string>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void say(const QString& line)
{
    std::fputs((line + u'\n').toUtf8().constData(), stdout);
    std::fflush(stdout);
}

QString readCommand()
{
    std::string line;
    for (char c = 0; ::read(STDIN_FILENO, &c, 1) == 1 && c != '\n';)
        line += c;
    return QString::fromStdString(line);
}

class StubbornWindow : public QDialog
{
protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
    void reject() override {}
};

void runCopy(QtSingleApplication& app, const QString& message)
{
    say(u"starting"_s);
    if (app.isRunning()) {
        say(app.sendMessage(message, 5000) ? u"second sent"_s : u"second failed"_s);
        return;
    }
    say(app.isFirst() ? u"first"_s : u"refused"_s);
    QObject::connect(&app, &QtSingleApplication::messageReceived, &app,
                     [](const QString& text) { say(u"message "_s + text); });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, [] {
        readCommand();
        QCoreApplication::exit(0);
    });
    QApplication::exec();
    say(u"ending"_s);
    readCommand();
}

int runSignals(const QString& mode)
{
    QApplication::setQuitOnLastWindowClosed(false);
    const SignalHandler handler;
    StubbornWindow window;
    // What a file that grows too large brings: the write fails, and nothing ends.
    std::raise(SIGXFSZ);
    if (mode == "early"_L1) {
        std::raise(SIGTERM);
        // As while starting up: a turn of the loop that is not the last.
        QCoreApplication::processEvents();
    } else if (mode == "window"_L1) {
        window.show();
    }
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &window, [&window] {
        const QString command = readCommand();
        QMetaObject::invokeMethod(
            &window, [command] { say(u"got "_s + command); }, Qt::QueuedConnection);
        if (command == "dialog"_L1)
            window.exec();
    });
    say(u"ready"_s);
    const int exitCode = QApplication::exec();
    say(u"ended"_s);
    return exitCode;
}

/// Searches for ever, as the system's search may do while a script for it cannot be had.
class LostProxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& /*query*/) override
    {
        say(u"looking up"_s);
        for (;;)
            ::pause();
    }
};

/// Ends while a name and a proxy are being looked up that no server answers for.
int runLookup(int& argc, char** argv, const QString& log)
{
    const QCoreApplication app(argc, argv);
    if (dynamic_singleton<logging::LogHelper>::inst().init(log))
        MVR_LOG_ERR(u"last words"_s);
    QHostInfo::lookupHost(u"nowhere.example"_s, [](const QHostInfo&) {});
    QNetworkProxyFactory::setApplicationProxyFactory(new LostProxies);
    dynamic_singleton<UserMetrics>::inst();
    NetServices::shared()->checkForUpdates();
    readCommand();
    armExitDeadline(7);
    NetServices::destroyShared();
    return 1;
}

} // namespace

/// In place of the system's: a resolver that waits for ever.
extern "C" int getaddrinfo(const char* /*node*/, const char* /*service*/, const addrinfo* /*hints*/,
                           addrinfo** /*result*/)
{
    say(u"looking up"_s);
    for (;;)
        ::pause();
}

int main(int argc, char** argv)
{
    const QString mode = QString::fromLocal8Bit(argv[1]);
    const QString argument = QString::fromLocal8Bit(argv[2]);
    if (mode == "lookup"_L1)
        return runLookup(argc, argv, argument);
    if (mode == "signals"_L1) {
        const QApplication app(argc, argv);
        return runSignals(argument);
    }
    QtSingleApplication app(u"test-copy"_s, argc, argv, argument);
    if (argc > 3)
        app.guard(QFileInfo(QString::fromLocal8Bit(argv[3])).canonicalFilePath());
    runCopy(app, mode);
}
