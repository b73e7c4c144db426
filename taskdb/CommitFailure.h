// What keeps the database from being written, for whoever tells the user.
#pragma once

#include <QDateTime>

/// Empty while all is well.
struct CommitFailure
{
    enum ECause
    {
        none,
        file,   ///< the file could not be written
        thread, ///< the commit thread could not be started: changes are written at the end
    };

    ECause cause = none;
    int error = 0;    ///< of a file: what the system said, from errno.h; 0 if unknown
    QDateTime since;  ///< the first attempt that failed, in local time
    QDateTime latest; ///< the last one
};
