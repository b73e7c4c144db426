// What a drag of tasks carries.
#pragma once

#include "taskdb/TodoTask.h"

#include <QList>
#include <QPixmap>

#include <boost/shared_ptr.hpp>

#include <functional>

class DragGroup;
class QMimeData;
class QWidget;

namespace taskdrag {

/// The registered drag's number for targets in this program, the tasks as text for others. The
/// caller owns it.
[[nodiscard]] QMimeData* mimeData(int dragId, const QList<TodoTask>& tasks);

/// The registered drag of tasks that this data stands for; empty for anything else.
[[nodiscard]] boost::shared_ptr<DragGroup> find(const QMimeData* data);

/// The first rows stacked, half transparent. `rowAt` gives the widget of the n-th dragged row, one
/// at a time; `count`: how many are dragged.
[[nodiscard]] QPixmap picture(qsizetype count, const std::function<QWidget*(qsizetype)>& rowAt,
                              qreal devicePixelRatio);

} // namespace taskdrag
