// What a store held where it has been changed.
#pragma once

#include "taskdb/FocusGroup.h"

#include <QHash>
#include <QList>
#include <QSet>

#include <optional>

/// Records and groups as they were, or are to become: what a change replaced, and thereby all it
/// takes to go back. Costs as much as the change.
struct StoreDelta
{
    QHash<TodoTask::Id, TodoTask> tasks;
    /// Empty for a group that does not exist on that side.
    QHash<FocusGroup::Id, std::optional<GroupImage>> groups;
    /// The custom groups in panel order, if that differs.
    std::optional<QList<FocusGroup::Id>> order;

    [[nodiscard]] bool isEmpty() const { return tasks.isEmpty() && groups.isEmpty() && !order; }
};

/// What an exchange has changed.
struct StoreDifference
{
    /// Records with other fields, and new ones.
    QList<TodoTask::Id> tasks;
    /// Groups with other members or in another order, each with the tasks that are new to it.
    QHash<FocusGroup::Id, QList<TodoTask::Id>> groups;
    /// Groups have come or gone, changed places, their name or their icon.
    bool panel = false;
};

/// Takes note of what the store replaces, under the store's lock.
class StoreJournal
{
public:
    StoreDelta replaced;
    /// Tasks created since `replaced` was taken last: going back leaves them their content.
    QSet<TodoTask::Id> created;

    /// A change was counted; all that it replaced until now is in `replaced`.
    virtual void changeCounted() = 0;

protected:
    ~StoreJournal() = default;
};
