#include "app/base/Platform.h"

#include <QString>

bool platform::canSetProgramToRunAtStartup()
{
    return false;
}

bool platform::setProgramToRunAtStartup(const QString& executable, bool enable)
{
    Q_UNUSED(executable)
    Q_UNUSED(enable)
    return false;
}
