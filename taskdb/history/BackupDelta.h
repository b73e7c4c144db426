// What it takes to go back to an earlier version of the database.
#pragma once

#include "taskdb/StoreDelta.h"

class TaskStorage;
class TaskStorageSnapsot;

/// Makes the store hold the groups and tasks of `version`, a snapshot of lists. Tasks that it does
/// not have are then in no group.
[[nodiscard]] StoreDelta returnToVersion(const TaskStorage& store,
                                         const TaskStorageSnapsot& version);

/// Adds a group of that name behind the others, with these tasks as they are in `version`; empty if
/// there are none.
[[nodiscard]] StoreDelta bringBackTasks(const TaskStorage& store, const TaskStorageSnapsot& version,
                                        const QList<TodoTask::Id>& tasks, const QString& groupName);
