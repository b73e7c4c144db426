// Disk operations that fail on request, for the test executable this is compiled into.
#pragma once

#include <QtGlobal>

/// Stands before the system's write, fdatasync, fsync, link, rename and renameat2 in this process,
/// also where Qt calls them. Without a request everything goes through. A request concerns the
/// files whose path contains `pathPart`, a rename or link with such a path at either end. Any
/// thread.
class DiskFaults
{
public:
    /// Lets `bytes` more be written, the last write before that falling short as on a full disk;
    /// then `times` writes fail with `error` (a number from errno.h), and later ones go through.
    static void failWritesAfter(qint64 bytes, int error, const char* pathPart, int times = always)
    {
        failNext("write", error, pathPart, times, bytes);
    }

    /// Makes the next `times` calls of any of them, by name, fail with `error`; of writes those
    /// after the first `room` bytes.
    static void failNext(const char* call, int error, const char* pathPart, int times = 1,
                         qint64 room = 0);

    /// Withdraws all requests and the counts.
    static void reset();

    /// How many calls have failed on request since the last reset(): whether a fault was met.
    static int failures();

    static constexpr int always = -1;
};
