// Groups of tasks as plain text, for other programs to read.
#pragma once

#include "taskdb/FocusGroup.h"

class QIODevice;
class TaskStorageSnapsot;

/// A task as the export writes it, without the line's end: "- task", completed "= task".
[[nodiscard]] QString exportLine(const TodoTask& task);

/// Writes the given groups, in this order: "[name]", the line of each task, an empty line. UTF-8
/// without byte-order mark, CR LF after every line. Groups and tasks that the snapshot, which must
/// be one of tables, does not hold are left out. Whether writing worked is for the caller to ask
/// the device.
void writeExportText(QIODevice& device, const TaskStorageSnapsot& snapshot,
                     const QList<FocusGroup::Id>& groups);
