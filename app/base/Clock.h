// The one source of "now" and "today".
#pragma once

#include <QDateTime>

/// Wall-clock time. Tests freeze it; the program never does. Thread-safe.
class Clock
{
public:
    /// Milliseconds since 1970-01-01 00:00 UTC.
    [[nodiscard]] static qint64 nowMs();
    /// Current local date-time, to the millisecond.
    [[nodiscard]] static QDateTime now();
    /// Current local date.
    [[nodiscard]] static QDate today();

    /// Makes the clock stand still at `moment` until release().
    static void freeze(const QDateTime& moment);
    static void release();
};
