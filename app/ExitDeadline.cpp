#include "app/ExitDeadline.h"

#include "app/base/LogHelper.h"
#include "app/base/OptionalThread.h"

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

namespace {
#ifdef __SANITIZE_ADDRESS__
// Looking for leaks is part of the end, and takes its time.
constexpr auto patience = 5s;
#else
constexpr auto patience = 300ms;
#endif
constexpr auto logPatience = 100ms;

std::timed_mutex& logMutex()
{
    // Never destroyed: the deadline may come after the process's statics are gone.
    static auto& mutex = *new std::timed_mutex;
    return mutex;
}
} // namespace

void armExitDeadline(int exitCode)
{
    std::jthread deadline = startOptionalThread([exitCode] {
        std::this_thread::sleep_for(patience);
        // Kept to the end: the log must not go any more.
        if (logMutex().try_lock_for(logPatience) && dynamic_singleton<logging::LogHelper>::exists())
            dynamic_singleton<logging::LogHelper>::inst().flush(logPatience.count());
        std::_Exit(exitCode);
    });
    if (deadline.joinable())
        deadline.detach();
}

void destroyLog()
{
    const std::lock_guard lock(logMutex());
    dynamic_singleton<logging::LogHelper>::destroy();
}
