// Groups of tasks as plain text, for other programs to read.
#pragma once

#include "taskdb/FocusGroup.h"

class QIODevice;
class TaskStorageSnapsot;

/// Writes the given groups, in this order: "[name]", a line "- task" or, for a completed one,
/// "= task" each, an empty line. UTF-8 without byte-order mark, CR LF after every line. Groups
/// and tasks that the snapshot, which must be one of tables, does not hold are left out.
/// Whether writing worked is for the caller to ask the device.
void writeExportText(QIODevice& device, const TaskStorageSnapsot& snapshot,
                     const QList<FocusGroup::Id>& groups);
