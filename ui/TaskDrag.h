// What a drag of tasks carries.
#pragma once

#include "taskdb/TodoTask.h"

#include <QList>

#include <boost/shared_ptr.hpp>

class DragGroup;
class QMimeData;

namespace taskdrag {

/// The registered drag's number for targets in this program, the tasks as text for others. The
/// caller owns it.
[[nodiscard]] QMimeData* mimeData(int dragId, const QList<TodoTask>& tasks);

/// The registered drag of tasks that this data stands for; empty for anything else.
[[nodiscard]] boost::shared_ptr<DragGroup> find(const QMimeData* data);

} // namespace taskdrag
