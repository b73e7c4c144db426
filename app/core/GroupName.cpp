#include "app/core/GroupName.h"

#include "taskdb/TaskStorage.h"

#include <QCoreApplication>

#include <array>

namespace {

struct BuiltInGroup
{
    FocusGroup::Id id;
    const char* name;
};

} // namespace

QString shownGroupName(const FocusGroup& group)
{
    static const std::array<BuiltInGroup, 3> builtIn = {{
        {TaskStorage::ms_inboxId, QT_TRANSLATE_NOOP("FocusGroup", "Inbox")},
        {TaskStorage::ms_completedId, QT_TRANSLATE_NOOP("FocusGroup", "Completed")},
        {TaskStorage::ms_trashId, QT_TRANSLATE_NOOP("FocusGroup", "Trash")},
    }};
    for (const BuiltInGroup& one : builtIn) {
        if (one.id == group.id() && QLatin1StringView(one.name) == group.name())
            return QCoreApplication::translate("FocusGroup", one.name);
    }
    return group.name();
}
