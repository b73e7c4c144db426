// Times programs from their start to their first painted frame, by watching the screen's middle,
// and measures the memory that they hold once they have come to rest after it.
// Usage: firstframe ROUNDS COMMAND [COMMAND …]
// Each command is a shell word list that starts one process; commands run in turn, ROUNDS times.
// Prints a line for each, of medians: milliseconds, KiB resident, KiB with shared pages counted by
// share, KiB private and written to; then the command. The display must be otherwise empty.

#include "bench/figures.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

/// More would only take longer: these figures hardly vary.
constexpr int memoryRounds = 5;
constexpr auto patience = std::chrono::seconds(10);

unsigned long middlePixel(Display* display)
{
    const int screen = DefaultScreen(display);
    XImage* image =
        XGetImage(display, RootWindow(display, screen), DisplayWidth(display, screen) / 2,
                  DisplayHeight(display, screen) / 2, 1, 1, AllPlanes, ZPixmap);
    const unsigned long pixel = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    return pixel;
}

/// Waits until the pixel differs from `pixel` (or equals it); false after ten seconds.
bool waitFor(Display* display, unsigned long pixel, bool differs)
{
    const auto deadline = Clock::now() + patience;
    while ((middlePixel(display) != pixel) != differs) {
        if (Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(300));
    }
    return true;
}

pid_t start(const char* command)
{
    const pid_t child = fork();
    if (child == 0) {
        const std::string line = std::string("exec ") + command;
        execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    return child;
}

struct Memory
{
    double resident = 0; ///< KiB, like the others
    double byShare = 0;
    double written = 0;
};

std::string procFile(pid_t process, const char* name)
{
    return "/proc/" + std::to_string(process) + '/' + name;
}

Memory memoryOf(pid_t process)
{
    Memory memory;
    std::ifstream file(procFile(process, "smaps_rollup"));
    // The first line is of another form.
    file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    std::string key;
    double value = 0;
    std::string unit;
    while (file >> key >> value >> unit) {
        if (key == "Rss:")
            memory.resident = value;
        else if (key == "Pss:")
            memory.byShare = value;
        else if (key == "Private_Dirty:")
            memory.written = value;
    }
    return memory;
}

/// Processor time of all threads so far, in clock ticks.
long ticksOf(pid_t process)
{
    std::ifstream file(procFile(process, "stat"));
    // The name, in parentheses, may hold anything; after it come eleven fields of no interest.
    file.ignore(std::numeric_limits<std::streamsize>::max(), ')');
    std::string skipped;
    for (int field = 0; field < 11; ++field)
        file >> skipped;
    long user = 0;
    long system = 0;
    file >> user >> system;
    return user + system;
}

/// What the process holds when it has neither worked nor grown for half a second; nothing if it
/// never rests.
std::optional<Memory> memoryAtRest(pid_t process)
{
    constexpr auto interval = std::chrono::milliseconds(50);
    constexpr int wanted = 10;
    const auto deadline = Clock::now() + patience;
    Memory memory;
    long ticks = -1;
    for (int alike = 0; alike < wanted; ++alike) {
        if (Clock::now() > deadline)
            return {};
        const Memory memoryNow = memoryOf(process);
        const long ticksNow = ticksOf(process);
        // Shares also depend on the processes around.
        if (ticksNow != ticks || memoryNow.resident != memory.resident)
            alike = 0;
        memory = memoryNow;
        ticks = ticksNow;
        std::this_thread::sleep_for(interval);
    }
    return memory;
}

struct Samples
{
    std::vector<double> ms;
    std::vector<double> resident;
    std::vector<double> byShare;
    std::vector<double> written;
};

/// Runs the command once; false if it painted nothing, or never came to rest.
bool measure(Display* display, const char* command, bool withMemory, Samples& samples)
{
    const unsigned long background = middlePixel(display);
    const auto begin = Clock::now();
    const pid_t child = start(command);
    const bool painted = waitFor(display, background, true);
    const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
    samples.ms.push_back(time.count());
    bool rested = true;
    if (painted && withMemory) {
        const std::optional<Memory> memory = memoryAtRest(child);
        rested = memory && memory->resident > 0;
        if (rested) {
            samples.resident.push_back(memory->resident);
            samples.byShare.push_back(memory->byShare);
            samples.written.push_back(memory->written);
        }
    }
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    return painted && rested && waitFor(display, background, false);
}

} // namespace

int main(int argc, char** argv)
{
    Display* display = XOpenDisplay(nullptr);
    const int rounds = argc < 3 ? 0 : std::atoi(argv[1]);
    if (!display || rounds < 1) {
        std::fputs("usage: firstframe ROUNDS COMMAND…   (with DISPLAY set)\n", stderr);
        return 2;
    }
    const int commands = argc - 2;
    std::vector<Samples> samples(static_cast<size_t>(commands));
    for (int round = 0; round < rounds; ++round) {
        for (int i = 0; i < commands; ++i) {
            if (!measure(display, argv[i + 2], round < memoryRounds,
                         samples[static_cast<size_t>(i)])) {
                std::fprintf(stderr, "firstframe: no frame or no rest from %s\n", argv[i + 2]);
                return 1;
            }
        }
    }
    for (int i = 0; i < commands; ++i) {
        const Samples& all = samples[static_cast<size_t>(i)];
        std::printf("%.1f %.0f %.0f %.0f %s\n", bench::median(all.ms), bench::median(all.resident),
                    bench::median(all.byShare), bench::median(all.written), argv[i + 2]);
    }
    XCloseDisplay(display);
    return 0;
}
