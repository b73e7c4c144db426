#include "ui/find/FoundTask.h"

#include "app/core/GroupName.h"
#include "app/core/TaskCore.h"
#include "ui/controls/OneLine.h"
#include "ui/icons/IconsHelper.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// More than fits on any screen; what lies beyond need not be laid out.
constexpr qsizetype longestLine = 500;
/// Notes further down are not shown, so that no task takes longer than a moment.
constexpr qsizetype longestNotes = 100'000;
/// What is shown of the notes before the match.
constexpr qsizetype lead = 24;

/// Around `place`; begins with a whole word where there is one near.
QString pieceOf(const QString& notes, qsizetype place)
{
    const qsizetype from = qMax<qsizetype>(0, place - lead);
    if (from == 0)
        return fancy::onOneLine(notes.left(longestLine)).trimmed();
    QStringView piece = QStringView(notes).mid(from, longestLine);
    for (qsizetype i = 0; i < place - from; ++i) {
        if (piece.at(i).isSpace()) {
            piece = piece.mid(i + 1);
            break;
        }
    }
    if (piece.front().isLowSurrogate())
        piece = piece.mid(1);
    return u'…' + fancy::onOneLine(piece.toString()).trimmed();
}

QList<FoundTask::Group> groupsOf(const TodoTask::Id& id)
{
    const auto& icons = dynamic_singleton<IconsHelper>::inst();
    QList<FocusGroup::Id> ids;
    taskStorage().enumGroups(ids);
    // As the panel has them: between the Inbox and the archives stand the custom groups.
    std::stable_partition(ids.begin(), ids.end(), [](const FocusGroup::Id& group) {
        return !TaskStorage::isArchive(group);
    });
    QList<FoundTask::Group> groups;
    for (const FocusGroup::Id& groupId : std::as_const(ids)) {
        const FocusGroup group = taskStorage().getGroup(groupId);
        if (group.contains(id)) {
            groups.append({fancy::onOneLine(shownGroupName(group)),
                           icons.groupIcon(groupId, group.iconName(), group.tasks().isEmpty())});
        }
    }
    return groups;
}

} // namespace

FoundTask foundTask(const TodoTask::Id& id, const TaskQuery& query)
{
    const TodoTask task = taskStorage().get(id);
    FoundTask found;
    if (task.name().isEmpty()) {
        found.name = QCoreApplication::translate("TaskWidget", "<Unnamed task>");
    } else {
        found.name = fancy::onOneLine(task.name().left(longestLine));
        found.nameMatches = query.ranges(found.name);
    }
    const QString notes = task.notes().left(longestNotes);
    const qsizetype place = query.placeInNotes(task.name(), notes);
    if (place >= 0) {
        found.notes = pieceOf(notes, place);
        found.notesMatches = query.ranges(found.notes);
    }
    found.groups = groupsOf(id);
    found.due = task.timeDue().date();
    found.daysToEvent = task.daysToEvent();
    found.completed = task.completed();
    return found;
}

QString spokenText(const FoundTask& task)
{
    QStringList parts{task.name};
    QStringList groups;
    for (const FoundTask::Group& group : task.groups)
        groups += group.name;
    if (!groups.isEmpty())
        parts += QCoreApplication::translate("FoundTask", "in %1").arg(groups.join(u", "_s));
    if (task.due.isValid()) {
        parts += QCoreApplication::translate("FoundTask", "due %1")
                     .arg(QLocale().toString(task.due, QLocale::LongFormat));
    }
    if (task.completed)
        parts += QCoreApplication::translate("FoundTask", "completed");
    return parts.join(u", "_s);
}
