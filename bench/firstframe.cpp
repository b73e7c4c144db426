// Times programs from their start to their first painted frame, by watching the screen's middle.
// Usage: firstframe ROUNDS COMMAND [COMMAND …]
// Each command is a shell word list; commands run in turn, ROUNDS times. Prints a line for each:
// median milliseconds and the command. The display must be otherwise empty.

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

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
    const auto deadline = Clock::now() + std::chrono::seconds(10);
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

/// Milliseconds to the first frame, or a negative number.
double timed(Display* display, const char* command)
{
    const unsigned long background = middlePixel(display);
    const auto begin = Clock::now();
    const pid_t child = start(command);
    const bool painted = waitFor(display, background, true);
    const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    return painted && waitFor(display, background, false) ? time.count() : -1;
}

} // namespace

int main(int argc, char** argv)
{
    Display* display = XOpenDisplay(nullptr);
    if (!display || argc < 3) {
        std::fputs("usage: firstframe ROUNDS COMMAND…   (with DISPLAY set)\n", stderr);
        return 2;
    }
    const int commands = argc - 2;
    std::vector<std::vector<double>> times(static_cast<size_t>(commands));
    for (int round = 0; round < std::atoi(argv[1]); ++round) {
        for (int i = 0; i < commands; ++i) {
            const double ms = timed(display, argv[i + 2]);
            if (ms < 0) {
                std::fprintf(stderr, "firstframe: no frame from %s\n", argv[i + 2]);
                return 1;
            }
            times[static_cast<size_t>(i)].push_back(ms);
        }
    }
    for (int i = 0; i < commands; ++i) {
        auto& all = times[static_cast<size_t>(i)];
        std::sort(all.begin(), all.end());
        std::printf("%.1f %s\n", all[all.size() / 2], argv[i + 2]);
    }
    XCloseDisplay(display);
    return 0;
}
