#include "app/SignalHandler.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {
volatile std::sig_atomic_t wakeUpSocket = -1;

extern "C" void wakeUp(int /*signal*/)
{
    const int savedErrno = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t sent =
        ::send(wakeUpSocket, &byte, sizeof byte, MSG_NOSIGNAL | MSG_DONTWAIT);
    errno = savedErrno;
}

void handle(int signal)
{
    struct sigaction action = {};
    if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = wakeUp;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}
} // namespace

SignalHandler::SignalHandler(QObject* parent)
    : QObject(parent)
{
    std::signal(SIGXFSZ, SIG_IGN);
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return;
    m_readEnd = ends[0];
    m_writeEnd = ends[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_readEnd, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &SignalHandler::_onSignal);
    wakeUpSocket = m_writeEnd;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        handle(signal);
}

void SignalHandler::surviveBrokenPipes()
{
    // A handler, since an ignored signal would stay ignored in the programs that we start.
    std::signal(SIGPIPE, [](int) {});
}

SignalHandler::~SignalHandler()
{
    wakeUpSocket = -1;
    m_notifier.reset();
    for (const int end : {m_readEnd, m_writeEnd}) {
        if (end >= 0)
            ::close(end);
    }
}

void SignalHandler::_onSignal()
{
    // What the signal sent stays unread, so that every loop entered later ends as well, and a
    // signal that came before the main one is not lost. Not quit(): a window could refuse that.
    QCoreApplication::exit(0);
}
