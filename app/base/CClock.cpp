#include "app/base/CClock.h"

#include "app/base/LogHelper.h"

#include <ctime>

using namespace Qt::StringLiterals;

struct CClockPrv
{
    clockid_t id = CLOCK_MONOTONIC;
    bool usable = true;
    timespec resolution{};
    timespec start{};

    bool read(timespec& time) const { return usable && clock_gettime(id, &time) == 0; }
};

CClock::CClock()
    : m_prv(std::make_unique<CClockPrv>())
{
    m_prv->usable = clock_getres(m_prv->id, &m_prv->resolution) == 0;
    const timespec& resolution = m_prv->resolution;
    MVR_LOG_DEBUG(u"timer resolution "_s + QString::number(resolution.tv_sec) + u"; "_s +
                  QString::number(resolution.tv_nsec) + u"; as ms "_s +
                  QString::number(toMilliseconds(resolution.tv_sec, resolution.tv_nsec)));
    m_prv->read(m_prv->start);
}

CClock::~CClock() = default;

qint64 CClock::restart()
{
    timespec now{};
    if (!m_prv->read(now))
        return -1;
    m_prv->start = now;
    return toMilliseconds(now.tv_sec, now.tv_nsec);
}

qint64 CClock::elapsed() const
{
    timespec now{};
    if (!m_prv->read(now))
        return -1;
    return toMilliseconds(now.tv_sec - m_prv->start.tv_sec, now.tv_nsec - m_prv->start.tv_nsec);
}

qint64 CClock::elapsed(qint64 since) const
{
    timespec now{};
    if (!m_prv->read(now))
        return -1;
    return toMilliseconds(now.tv_sec - since / 1000, now.tv_nsec - (since % 1000) * 1000000);
}

qint64 CClock::toMilliseconds(qint64 seconds, qint64 nanoseconds)
{
    // Unsigned, since signed overflow is undefined.
    const quint32 wrapped =
        static_cast<quint32>(seconds) * 1000U + static_cast<quint32>(nanoseconds / 1000000);
    return static_cast<qint32>(wrapped);
}

QString CClock::secondsText(qint64 milliseconds)
{
    return QString::number(milliseconds / 1000) + u'.' + QString::number(milliseconds % 1000) +
           u's';
}
