// The colours of what is not painted by the program itself: menus, dialogs, tool tips.
#pragma once

namespace fancy {

/// Gives the application light colours if those of the desktop are dark: the program's own fit no
/// others. To be called once there is an application, and when its palette has changed.
void replaceDarkPalette();

} // namespace fancy
