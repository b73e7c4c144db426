#include "app/ExitDeadline.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>

using namespace std::chrono_literals;

void ExitDeadline::arm(int exitCode)
{
    m_thread = std::jthread([exitCode](const std::stop_token& inTime) {
        std::mutex mutex;
        std::unique_lock lock(mutex);
        std::condition_variable_any never;
        never.wait_for(lock, inTime, 300ms, [] { return false; });
        if (!inTime.stop_requested())
            std::_Exit(exitCode);
    });
}
