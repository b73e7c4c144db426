// The box that says why the program does not start.
#pragma once

#include "taskdb/TaskStorage.h"

#include <QCoreApplication>

/// Shown instead of the main window when the database did not load. Interface thread.
class StartupRefusal
{
    Q_DECLARE_TR_FUNCTIONS(StartupRefusal)

public:
    /// Puts the log on the disk, then shows the box and waits for the user. `error`: any but
    /// NoError.
    static void show(TaskStorage::ErrorType error);

private:
    [[nodiscard]] static QString _text(TaskStorage::ErrorType error);
};
