// Pop-up messages for the rest of the program.
#pragma once

#include <QtGlobal>

class QString;

/// Connects to the notification service for as long as it lives. All share that connection: the
/// first one that goes takes it down, and those that stay make a new one when they need it.
/// Interface thread.
class NotifyHelper
{
public:
    NotifyHelper();
    ~NotifyHelper();
    Q_DISABLE_COPY_MOVE(NotifyHelper)

    /// Whether there is a session bus to send messages over.
    [[nodiscard]] bool isAvailable() const { return m_isInitted; }

    /// Shows a message of two plain texts and waits until the service has taken it, for three
    /// seconds at most. Returns whether it has.
    bool show(const QString& title, const QString& text);

private:
    bool m_isInitted = false;
};
