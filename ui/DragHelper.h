// The registry of running drags.
#pragma once

#include "app/base/dynamic_singleton.h"
#include "ui/DragGroup.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <boost/shared_ptr.hpp>

class QMimeData;

/// Only a drag's number travels in the MIME data; what is dragged stays here. Data of another
/// running program, or of a drag that has ended, thus leads to nothing. Reached through
/// dynamic_singleton<DragHelper>; interface thread.
class DragHelper
{
public:
    DragHelper() = default;
    Q_DISABLE_COPY_MOVE(DragHelper)

    /// The MIME format of a drag's number: decimal digits in ASCII.
    [[nodiscard]] static QString dragMimeType();

    /// Registers a drag until dragDone() and returns its number. Numbers start again at 0
    /// whenever no drag is registered.
    [[nodiscard]] int startDrag(const boost::shared_ptr<DragGroup>& drag);
    /// The registered drag; empty for an unknown number.
    [[nodiscard]] boost::shared_ptr<DragGroup> dragGroup(int id) const;
    /// The same by MIME content; empty as well for what is no decimal number.
    [[nodiscard]] boost::shared_ptr<DragGroup> dragGroup(const QByteArray& data) const;
    /// The registered drag that this data stands for; empty for data of anything else.
    [[nodiscard]] boost::shared_ptr<DragGroup> dragOf(const QMimeData* data) const;
    /// Whether a drag is running.
    [[nodiscard]] bool isDragging() const { return !m_drags.isEmpty(); }
    /// For the drag's source, once the drag is over, whatever became of it.
    void dragDone(int id);

private:
    int m_nextId = 0;
    QHash<int, boost::shared_ptr<DragGroup>> m_drags;
};
