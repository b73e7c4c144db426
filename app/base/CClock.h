// A monotonic millisecond stopwatch.
#pragma once

#include <QString>

#include <memory>

struct CClockPrv;

/// Times loads and commits. Results are milliseconds in 32-bit arithmetic, which wraps for
/// readings beyond about 24.8 days; intervals stay right. Every query gives -1 on a system
/// without a monotonic clock.
class CClock
{
public:
    /// Starts the stopwatch.
    CClock();
    ~CClock();
    Q_DISABLE_COPY_MOVE(CClock)

    /// Starts anew and returns the reading of the clock.
    qint64 restart();
    /// Time since the start.
    [[nodiscard]] qint64 elapsed() const;
    /// Time since a reading that restart() returned.
    [[nodiscard]] qint64 elapsed(qint64 since) const;

    /// seconds x 1000 + nanoseconds / 1000000, wrapped to 32 bits.
    [[nodiscard]] static qint64 toMilliseconds(qint64 seconds, qint64 nanoseconds);
    /// Milliseconds as the log has them: whole seconds, a point, and what is left of the
    /// milliseconds without leading zeros, so that 1005 reads "1.5s".
    [[nodiscard]] static QString secondsText(qint64 milliseconds);

private:
    std::unique_ptr<CClockPrv> m_prv;
};
