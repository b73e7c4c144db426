// The box that says why the program does not start.
#pragma once

#include "taskdb/TaskStorage.h"

#include <QCoreApplication>

/// Shown instead of the main window. Interface thread.
class StartupRefusal
{
    Q_DECLARE_TR_FUNCTIONS(StartupRefusal)

public:
    // Each puts the log on the disk, then shows the box and waits for the user.

    /// The database did not load. `error`: any but NoError.
    static void show(TaskStorage::ErrorType error);
    /// Nothing can be locked in `folder`, so that another copy may be running there.
    static void showUnlockable(const QString& folder);

private:
    [[nodiscard]] static QString _text(TaskStorage::ErrorType error);
    static void _show(const QString& text);
};
