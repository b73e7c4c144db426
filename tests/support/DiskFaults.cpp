#include "tests/support/DiskFaults.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <map>
#include <mutex>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Fault
{
    int error = 0;
    int times = 0;
    qint64 room = 0;
    std::string pathPart{};
};

// Calls come before these are made and after they are gone: only an armed seam looks at them.
std::atomic<bool> armed{false};
std::atomic<int> failed{0};
std::mutex mutex;
std::map<std::string, Fault> faults;

std::string pathOf(int descriptor)
{
    std::array<char, 4096> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    return ::readlink(link.c_str(), path.data(), path.size() - 1) > 0 ? path.data() : "";
}

/// Whether the call is to fail, with the reason in errno. A write of `size` bytes is cut to what
/// there is room for.
bool fails(const char* call, const std::string& paths, size_t* size = nullptr)
{
    const std::scoped_lock lock(mutex);
    Fault& fault = faults[call];
    if (fault.times == 0 || paths.find(fault.pathPart) == std::string::npos)
        return false;
    if (size && fault.room > 0) {
        *size = std::min(*size, static_cast<size_t>(fault.room));
        fault.room -= static_cast<qint64>(*size);
        return false;
    }
    ++failed;
    fault.times -= fault.times > 0 ? 1 : 0;
    errno = fault.error;
    return true;
}

bool renameFails(const char* call, const char* from, const char* to)
{
    return armed && fails(call, std::string(from) + '\n' + to);
}

bool syncFails(const char* call, int descriptor)
{
    return armed && fails(call, pathOf(descriptor));
}

int asInt(long result)
{
    return static_cast<int>(result);
}

} // namespace

void DiskFaults::failNext(const char* call, int error, const char* pathPart, int times, qint64 room)
{
    const std::scoped_lock lock(mutex);
    faults[call] = {error, times, room, pathPart};
    armed = true;
}

void DiskFaults::reset()
{
    const std::scoped_lock lock(mutex);
    armed = false;
    failed = 0;
    faults.clear();
}

int DiskFaults::failures()
{
    return failed;
}

// What the program and Qt link to: definitions in the executable come before the libraries'.
extern "C" {

ssize_t write(int descriptor, const void* data, size_t size)
{
    if (armed && size > 0 && fails("write", pathOf(descriptor), &size))
        return -1;
    return ::syscall(SYS_write, descriptor, data, size);
}

int fdatasync(int descriptor)
{
    return syncFails("fdatasync", descriptor) ? -1 : asInt(::syscall(SYS_fdatasync, descriptor));
}

int fsync(int descriptor)
{
    return syncFails("fsync", descriptor) ? -1 : asInt(::syscall(SYS_fsync, descriptor));
}

int link(const char* from, const char* to) noexcept
{
    return renameFails("link", from, to) ? -1 : asInt(::syscall(SYS_link, from, to));
}

int rename(const char* from, const char* to) noexcept
{
    return renameFails("rename", from, to) ? -1 : asInt(::syscall(SYS_rename, from, to));
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned flags) noexcept
{
    if (renameFails("renameat2", from, to))
        return -1;
    return asInt(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

} // extern "C"
