#include "taskdb/history/BackupDelta.h"

#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageSnapsot.h"

#include <utility>

StoreDelta returnToVersion(const TaskStorage& store, const TaskStorageSnapsot& version)
{
    StoreDelta delta;
    for (const TodoTask& task : version.tasks())
        delta.tasks.insert(task.id(), task);
    delta.order.emplace();
    QList<FocusGroup::Id> present;
    store.enumGroups(present);
    for (const FocusGroup::Id& id : std::as_const(present)) {
        if (TaskStorage::isCustom(id))
            delta.groups.insert(id, std::nullopt);
    }
    for (const FocusGroup& group : version.groups()) {
        delta.groups.insert(group.id(), group.image());
        if (group.isCustom())
            delta.order->append(group.id());
    }
    return delta;
}

StoreDelta bringBackTasks(const TaskStorage& store, const TaskStorageSnapsot& version,
                          const QList<TodoTask::Id>& tasks, const QString& groupName)
{
    FocusGroup target;
    target.create();
    target._rename(groupName);
    for (const TodoTask::Id& id : tasks)
        target._add(id);
    if (std::as_const(target).tasks().isEmpty())
        return {};

    StoreDelta delta;
    for (const TodoTask& task : version.tasks()) {
        if (std::as_const(target).contains(task.id()))
            delta.tasks.insert(task.id(), task);
    }
    delta.groups.insert(target.id(), target.image());
    QList<FocusGroup::Id> order;
    store.enumGroups(order);
    order.removeIf([](const FocusGroup::Id& id) { return !TaskStorage::isCustom(id); });
    delta.order = order + QList{target.id()};
    return delta;
}
