// What differs from desktop to desktop.
#pragma once

class QString;

namespace platform {

/// Whether the program can be started at log-in. Ask before offering the choice to the user.
[[nodiscard]] bool canSetProgramToRunAtStartup();

/// Would have `executable` started at log-in, or no longer. Returns whether it was arranged.
bool setProgramToRunAtStartup(const QString& executable, bool enable);

} // namespace platform
