// What the program's command line asks for.
#pragma once

#include <QStringList>

/// Tells the options of an installer from the rest. Neither has any effect on this platform.
class CommandLine
{
public:
    /// 1 for "--install", 2 for "--uninstall", whichever stands first after the program's own
    /// name; 0 for neither.
    [[nodiscard]] static int init(const QStringList& arguments);
};
