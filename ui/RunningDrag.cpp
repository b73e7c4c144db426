#include "ui/RunningDrag.h"

#include "ui/DragHelper.h"

#include <QDrag>
#include <QMimeData>
#include <QPixmap>

RunningDrag::RunningDrag(QWidget* source, const boost::shared_ptr<DragGroup>& group)
    : m_source(source)
    , m_drag(new QDrag(source))
    , m_id(dynamic_singleton<DragHelper>::inst().startDrag(group))
{
    auto* data = new QMimeData;
    data->setData(DragHelper::dragMimeType(), QByteArray::number(m_id));
    m_drag->setMimeData(data);
}

RunningDrag::~RunningDrag()
{
    dynamic_singleton<DragHelper>::inst().dragDone(m_id);
}

void RunningDrag::setText(const QString& text)
{
    m_drag->mimeData()->setText(text);
}

void RunningDrag::setPicture(const QPixmap& picture, const QPoint& hotSpot)
{
    m_drag->setPixmap(picture);
    m_drag->setHotSpot(hotSpot);
}

bool RunningDrag::exec()
{
    return m_drag->exec(Qt::MoveAction) == Qt::MoveAction;
}
