// The program's application object.
#pragma once

#include "app/QtSingleApplication.h"

class QSessionManager;

/// One copy per user data folder; saves everything when the desktop session ends.
class MVRApp : public QtSingleApplication
{
    Q_OBJECT

public:
    MVRApp(const QString& id, int& argc, char** argv);

    /// The session ends, or is to be saved: writes what is loaded, and goes on running.
    virtual void commitData(QSessionManager& manager);

    /// Writes what is kept beside the tasks, each file only if it was loaded.
    static void saveLoadedSettings();

    /// Does nothing: the translations have an owner of their own.
    void loadTranslationsForLocaleId() {}

protected:
    bool event(QEvent* event) override;

private:
    /// The session manager asks for the program's state, as it does at every log-in.
    void _onSaveState();
};
