#include "ui/controls/Prefs.h"

#include "ui/controls/PrefsDialog.h"

bool prefs::hasPrefsDialog()
{
    return true;
}

PrefsDialog* prefs::dialogForPlatform(QWidget* parent)
{
    return new PrefsDialog(parent);
}
