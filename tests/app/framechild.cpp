// A small program on the application frame, for tests that need real processes.
// Reads commands on standard input, one a line, and tells on standard output what happens.
#include "app/ExitDeadline.h"
#include "app/QtSingleApplication.h"
#include "app/SignalHandler.h"
#include "app/base/LogHelper.h"

#include <QCloseEvent>
#include <QDialog>
#include <QSocketNotifier>
#include <QTimer>

#include <csignal>
#include <cstdio>
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

/// Ends by a signal that comes while a window refuses to close, or before the loop.
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
    } else {
        QTimer::singleShot(0, &window, [] { say(u"ready"_s); });
        window.exec();
    }
    const int exitCode = QApplication::exec();
    say(u"ended"_s);
    return exitCode;
}

/// Something at the end is never done.
void hangAtTheEnd(const QString& log)
{
    if (dynamic_singleton<logging::LogHelper>::inst().init(log))
        MVR_LOG_ERR(u"last words"_s);
    armExitDeadline(7);
    for (;;)
        ::pause();
}

} // namespace

int main(int argc, char** argv)
{
    const QString mode = QString::fromLocal8Bit(argv[1]);
    const QString argument = QString::fromLocal8Bit(argv[2]);
    if (mode == "deadline"_L1)
        hangAtTheEnd(argument);
    if (mode == "signals"_L1) {
        const QApplication app(argc, argv);
        return runSignals(argument);
    }
    QtSingleApplication app(u"test-copy"_s, argc, argv, argument);
    runCopy(app, mode);
}
