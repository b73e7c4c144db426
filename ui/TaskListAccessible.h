// What the task list tells screen readers.
#pragma once

#include "taskdb/TodoTask.h"

class TaskRowPanel;

/// Has every task list describe itself as a list of all its tasks, those out of view included.
/// Further calls do nothing.
void installTaskListAccessible();

// Heard by whoever listens.

/// The selection or the current row changed.
void announceSelection(TaskRowPanel* list);
/// The name or the checked state of a row changed.
void announceRow(TaskRowPanel* list, qsizetype row);
/// Rows have come or gone or changed places.
void announceRows(TaskRowPanel* list);
