#include "ui/controls/Prefs.h"

#include "ui/controls/PrefsDialog.h"

#include <QPointer>

bool prefs::hasPrefsDialog()
{
    return true;
}

PrefsDialog* prefs::dialogForPlatform(QWidget* parent)
{
    return new PrefsDialog(parent);
}

void prefs::showDialog(QWidget* parent)
{
    static QPointer<PrefsDialog> open;
    if (open)
        return;
    open = dialogForPlatform(parent);
    open->exec();
    // The window may have gone, and the dialog with it.
    if (open)
        open->deleteLater();
    open = nullptr;
}
