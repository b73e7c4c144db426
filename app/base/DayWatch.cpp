#include "app/base/DayWatch.h"

#include "app/base/Clock.h"

#include <QDateTime>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <sys/timerfd.h>
#include <unistd.h>

namespace {
constexpr int pollMs = 60'000;
constexpr qint64 hourMs = 3'600'000;

/// Milliseconds to the end of `day`; negative if it is over.
qint64 msToEndOf(const QDate& day)
{
    const qint64 now = Clock::nowMs();
    // The next day's first moment: some zones skip midnight, and some have skipped whole days.
    const QDateTime end = day.addDays(1).startOfDay();
    return end.isValid() ? end.toMSecsSinceEpoch() - now : hourMs;
}
} // namespace

DayWatch::DayWatch(QObject* parent)
    : QObject(parent)
    , m_day(Clock::today())
    , m_timer(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC))
{
    if (m_timer < 0) {
        _poll();
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_timer, QSocketNotifier::Read, this);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &DayWatch::_onWakeUp);
    _check();
}

DayWatch::~DayWatch()
{
    m_notifier.reset();
    if (m_timer >= 0)
        ::close(m_timer);
}

void DayWatch::_onWakeUp()
{
    quint64 expirations = 0;
    // Whether it expired or failed because the clock was set: the day may be another one.
    [[maybe_unused]] const ssize_t got = ::read(m_timer, &expirations, sizeof expirations);
    _check();
}

/// Compares the days and sleeps until this one is over.
void DayWatch::_check()
{
    const QDate before = m_day;
    int error = 0;
    do {
        m_day = Clock::today();
        error = m_pollTimer ? 0 : _arm();
        // ECANCELED: the clock was set since the day was looked at.
    } while (error == ECANCELED);
    if (error != 0)
        _poll();
    if (m_day != before)
        Q_EMIT dayChanged();
}

/// Returns an error number, or 0.
int DayWatch::_arm()
{
    const qint64 left = qMax(qint64{1}, msToEndOf(m_day));
    // By the wall clock: steady ones stand still while the machine is suspended.
    const qint64 expiry = QDateTime::currentMSecsSinceEpoch() + left;
    struct itimerspec when = {};
    when.it_value.tv_sec = expiry / 1000;
    when.it_value.tv_nsec = (expiry % 1000) * 1'000'000;
    constexpr int flags = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET;
    return ::timerfd_settime(m_timer, flags, &when, nullptr) == 0 ? 0 : errno;
}

/// Looks at the day every minute, where the system has no such timer.
void DayWatch::_poll()
{
    if (m_notifier)
        m_notifier->setEnabled(false);
    m_pollTimer = std::make_unique<QTimer>();
    connect(m_pollTimer.get(), &QTimer::timeout, this, &DayWatch::_check);
    m_pollTimer->start(pollMs);
}
