// Something that the panel can have the window do.
#pragma once

#include "taskdb/FocusGroup.h"

#include <QIcon>
#include <QString>

#include <functional>

/// A command as it is listed; one that opens a group carries that group's identifier.
struct Command
{
    QString text;
    QString keys; ///< as tool tips show them; empty for none
    QIcon icon;
    bool enabled = true;
    std::function<void()> run;
    FocusGroup::Id group;
};
