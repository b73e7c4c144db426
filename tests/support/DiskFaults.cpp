#include "tests/support/DiskFaults.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Fault
{
    const char* call;
    int error = 0;
    int times = 0;
    qint64 room = 0;
    std::string pathPart{};

    bool concerns(const char* path) const
    {
        return times != 0 && std::strstr(path, pathPart.c_str()) != nullptr;
    }
    int hit()
    {
        if (times > 0)
            --times;
        return error;
    }
};

// Calls come before these are made and after they are gone: only an armed seam looks at them.
std::atomic<bool> armed{false};
std::atomic<int> failed{0};
std::mutex mutex;
std::array<Fault, 6> faults{Fault{"write"}, Fault{"fdatasync"}, Fault{"fsync"},
                            Fault{"link"},  Fault{"rename"},    Fault{"renameat2"}};

Fault& faultOf(const char* call)
{
    const auto found = std::find_if(faults.begin(), faults.end(), [call](const Fault& fault) {
        return std::strcmp(fault.call, call) == 0;
    });
    if (found == faults.end())
        qFatal("no such fault: %s", call);
    return *found;
}

void request(const char* call, int error, const char* pathPart, int times, qint64 room)
{
    const std::scoped_lock lock(mutex);
    Fault& fault = faultOf(call);
    fault.error = error;
    fault.times = times;
    fault.room = room;
    fault.pathPart = pathPart;
    armed = true;
}

std::string pathOf(int descriptor)
{
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    std::array<char, 4096> path{};
    const ssize_t size = ::readlink(link.c_str(), path.data(), path.size() - 1);
    return size > 0 ? std::string(path.data()) : std::string();
}

/// The error that the call is to fail with, 0 for none.
int errorFor(const char* call, const char* path, const char* otherPath = "")
{
    if (!armed)
        return 0;
    const std::scoped_lock lock(mutex);
    Fault& fault = faultOf(call);
    if (!fault.concerns(path) && !fault.concerns(otherPath))
        return 0;
    ++failed;
    return fault.hit();
}

/// The same for a write of `size` bytes, which is cut to what there is room for.
int errorForWrite(int descriptor, size_t& size)
{
    if (!armed)
        return 0;
    const std::string path = pathOf(descriptor);
    const std::scoped_lock lock(mutex);
    Fault& fault = faultOf("write");
    if (size == 0 || !fault.concerns(path.c_str()))
        return 0;
    if (fault.room > 0) {
        size = std::min(size, static_cast<size_t>(fault.room));
        fault.room -= static_cast<qint64>(size);
        return 0;
    }
    ++failed;
    return fault.hit();
}

int failWith(int error)
{
    errno = error;
    return -1;
}

} // namespace

void DiskFaults::failWritesAfter(qint64 bytes, int error, const char* pathPart, int times)
{
    request("write", error, pathPart, times, bytes);
}

void DiskFaults::failNext(const char* call, int error, const char* pathPart, int times)
{
    request(call, error, pathPart, times, 0);
}

void DiskFaults::reset()
{
    const std::scoped_lock lock(mutex);
    armed = false;
    failed = 0;
    for (Fault& fault : faults)
        fault.times = 0;
}

int DiskFaults::failures()
{
    return failed;
}

// What the program and Qt link to: definitions in the executable come before the libraries'.
extern "C" {

ssize_t write(int descriptor, const void* data, size_t size)
{
    const int error = errorForWrite(descriptor, size);
    return error != 0 ? failWith(error) : ::syscall(SYS_write, descriptor, data, size);
}

int fdatasync(int descriptor)
{
    const int error = armed ? errorFor("fdatasync", pathOf(descriptor).c_str()) : 0;
    return error != 0 ? failWith(error) : static_cast<int>(::syscall(SYS_fdatasync, descriptor));
}

int fsync(int descriptor)
{
    const int error = armed ? errorFor("fsync", pathOf(descriptor).c_str()) : 0;
    return error != 0 ? failWith(error) : static_cast<int>(::syscall(SYS_fsync, descriptor));
}

int link(const char* from, const char* to) noexcept
{
    const int error = errorFor("link", from, to);
    return error != 0 ? failWith(error) : static_cast<int>(::syscall(SYS_link, from, to));
}

int rename(const char* from, const char* to) noexcept
{
    const int error = errorFor("rename", from, to);
    return error != 0 ? failWith(error) : static_cast<int>(::syscall(SYS_rename, from, to));
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned flags) noexcept
{
    const int error = errorFor("renameat2", from, to);
    return error != 0
               ? failWith(error)
               : static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

} // extern "C"
