#include "ui/TaskDrag.h"

#include "ui/DragHelper.h"

#include <QMimeData>
#include <QPainter>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype mostRowsShown = 3;
constexpr int gap = 1;
constexpr qreal opacity = 0.8;
} // namespace

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
    const QString format = DragHelper::dragMimeType();
    if (!data->hasFormat(format))
        return {};
    auto drag = dynamic_singleton<DragHelper>::inst().dragGroup(data->data(format));
    return drag && drag->type() == DragGroup::TasksDrag ? drag : nullptr;
}

QPixmap taskdrag::picture(qsizetype count, const std::function<QWidget*(qsizetype)>& rowAt,
                          qreal devicePixelRatio)
{
    const qsizetype shown = qMin(count, mostRowsShown);
    QPixmap picture;
    QPainter painter;
    int y = 0;
    for (qsizetype i = 0; i < shown; ++i) {
        QWidget* row = rowAt(i);
        QPixmap face(row->size() * devicePixelRatio);
        face.setDevicePixelRatio(devicePixelRatio);
        face.fill(Qt::transparent);
        row->render(&face, {}, {}, QWidget::DrawChildren);
        if (i == 0) {
            const QSize all(row->width(), row->height() * static_cast<int>(shown) +
                                              gap * static_cast<int>(shown - 1));
            picture = QPixmap(all * devicePixelRatio);
            picture.setDevicePixelRatio(devicePixelRatio);
            picture.fill(Qt::transparent);
            painter.begin(&picture);
            painter.setOpacity(opacity);
        }
        painter.drawPixmap(0, y, face);
        y += row->height() + gap;
    }
    return picture;
}
