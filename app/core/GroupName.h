// The names that groups are shown by.
#pragma once

#include "taskdb/FocusGroup.h"

/// A group's name; that of a built-in group, unless it was changed, in the language of the moment.
[[nodiscard]] QString shownGroupName(const FocusGroup& group);
