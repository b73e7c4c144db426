#include "ui/TaskDrag.h"

#include "ui/DragHelper.h"

#include <QMimeData>

using namespace Qt::StringLiterals;

QMimeData* taskdrag::mimeData(int dragId, const QList<TodoTask>& tasks)
{
    QStringList lines;
    lines.reserve(tasks.size());
    for (const TodoTask& task : tasks)
        lines += task.toString();
    auto* data = new QMimeData;
    data->setText(lines.join("\r\n"_L1));
    data->setData(DragHelper::dragMimeType(), QByteArray::number(dragId));
    return data;
}

boost::shared_ptr<DragGroup> taskdrag::find(const QMimeData* data)
{
    const auto drag = dynamic_singleton<DragHelper>::inst().dragOf(data);
    return drag && drag->type() == DragGroup::TasksDrag ? drag : nullptr;
}
