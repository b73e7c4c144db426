// Threads that the program can do without.
#pragma once

#include <system_error>
#include <thread>
#include <utility>

/// Starts `work` in a thread of its own. What comes back is not joinable where the system has no
/// thread to give, as at a limit of processes.
template <typename Work>
[[nodiscard]] std::jthread startOptionalThread(Work&& work)
{
    try {
        return std::jthread(std::forward<Work>(work));
    } catch (const std::system_error&) {
        return {};
    }
}
