#include "app/ExitDeadline.h"

#include <chrono>
#include <cstdlib>
#include <thread>

using namespace std::chrono_literals;

namespace {
#ifdef __SANITIZE_ADDRESS__
// Looking for leaks is part of the end, and takes its time.
constexpr auto patience = 5s;
#else
constexpr auto patience = 300ms;
#endif
} // namespace

void armExitDeadline(int exitCode)
{
    std::thread([exitCode] {
        std::this_thread::sleep_for(patience);
        std::_Exit(exitCode);
    }).detach();
}
