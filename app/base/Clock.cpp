#include "app/base/Clock.h"

#include <atomic>
#include <limits>

namespace {
constexpr qint64 running = std::numeric_limits<qint64>::min();
std::atomic<qint64> frozenMs{running};
} // namespace

qint64 Clock::nowMs()
{
    const qint64 frozen = frozenMs.load(std::memory_order_relaxed);
    return frozen == running ? QDateTime::currentMSecsSinceEpoch() : frozen;
}

QDateTime Clock::now()
{
    return QDateTime::fromMSecsSinceEpoch(nowMs());
}

QDate Clock::today()
{
    return now().date();
}

void Clock::freeze(const QDateTime& moment)
{
    frozenMs = moment.toMSecsSinceEpoch();
}

void Clock::release()
{
    frozenMs = running;
}
