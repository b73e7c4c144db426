#include "ui/DragHelper.h"

#include <QMimeData>

using namespace Qt::StringLiterals;

QString DragHelper::dragMimeType()
{
    return u"mvr/drag-id"_s;
}

int DragHelper::startDrag(const boost::shared_ptr<DragGroup>& drag)
{
    if (m_drags.isEmpty())
        m_nextId = 0;
    const int id = m_nextId++;
    m_drags.insert(id, drag);
    return id;
}

boost::shared_ptr<DragGroup> DragHelper::dragGroup(int id) const
{
    return m_drags.value(id);
}

boost::shared_ptr<DragGroup> DragHelper::dragGroup(const QByteArray& data) const
{
    bool ok = false;
    const int id = data.toInt(&ok);
    return ok ? dragGroup(id) : boost::shared_ptr<DragGroup>();
}

boost::shared_ptr<DragGroup> DragHelper::dragOf(const QMimeData* data) const
{
    return data->hasFormat(dragMimeType()) ? dragGroup(data->data(dragMimeType()))
                                           : boost::shared_ptr<DragGroup>();
}

void DragHelper::dragDone(int id)
{
    m_drags.remove(id);
}
