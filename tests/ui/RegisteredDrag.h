// A drag that drop targets can be tried with.
#pragma once

#include "ui/DragHelper.h"

#include <QMimeData>

/// Registers the drag for as long as it lives.
struct RegisteredDrag
{
    explicit RegisteredDrag(const boost::shared_ptr<DragGroup>& drag)
        : id(dynamic_singleton<DragHelper>::inst().startDrag(drag))
    {
        data.setData(DragHelper::dragMimeType(), QByteArray::number(id));
    }
    ~RegisteredDrag() { dynamic_singleton<DragHelper>::inst().dragDone(id); }
    Q_DISABLE_COPY_MOVE(RegisteredDrag)

    const int id;
    QMimeData data;
};
