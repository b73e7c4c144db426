// Not waiting for the system when everything is saved.
#pragma once

#include <QtGlobal>

#include <thread>

/// Ends the process, without any further clean-up, if its orderly end takes too long after arm().
/// Destroying the application waits for name lookups under way, which take as long as the system's
/// resolver has patience with a server that is gone.
class ExitDeadline
{
public:
    ExitDeadline() = default;
    Q_DISABLE_COPY_MOVE(ExitDeadline)

    /// Nothing is left to save: from here on the process has 0.3 s. It counts as ended in time when
    /// this object is destroyed, and otherwise ends with `exitCode`.
    void arm(int exitCode);

private:
    std::jthread m_thread;
};
