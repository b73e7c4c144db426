// Windows as the window manager has them.
#pragma once

class QWidget;

namespace windows {

/// Takes the window back from a window manager that keeps it out of sight, minimised or on another
/// workspace; shown again, it comes to where the user is. Any other window is left as it is. To
/// ask for it is not always enough: some window managers restore no minimised window over which a
/// modal dialog was opened, and let no program change the workspace. Interface thread.
void withdrawUnseen(QWidget& window);

} // namespace windows
