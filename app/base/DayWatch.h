// Notices that another day has begun.
#pragma once

#include <QDate>
#include <QObject>

#include <memory>

class QSocketNotifier;
class QTimer;

/// Tells when the local calendar day has become another one: at midnight, after a suspend that
/// lasted past it, and after the clock was set, forward or back.
class DayWatch : public QObject
{
    Q_OBJECT

public:
    explicit DayWatch(QObject* parent = nullptr);
    ~DayWatch() override;
    Q_DISABLE_COPY_MOVE(DayWatch)

Q_SIGNALS:
    void dayChanged();

private:
    void _onWakeUp();
    void _check();
    [[nodiscard]] int _arm();
    void _poll();

    QDate m_day;
    int m_timer = -1; // a file descriptor
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::unique_ptr<QTimer> m_pollTimer; // where there is no m_timer
};
