// What it takes to go back to an earlier version of the database.
#pragma once

#include "taskdb/StoreDelta.h"

class TaskStorage;
class TaskStorageSnapsot;

/// Makes the store hold the groups and tasks of `version`, a snapshot of lists. Tasks that it does
/// not have are then in no group.
[[nodiscard]] StoreDelta returnTo(const TaskStorage& store, const TaskStorageSnapsot& version);

/// Adds a group of that name, behind the others, with the tasks of `version` that no group of the
/// store lists and that were not in the Trash then; empty if there are none.
[[nodiscard]] StoreDelta bringBackMissing(const TaskStorage& store,
                                          const TaskStorageSnapsot& version,
                                          const QString& groupName);
