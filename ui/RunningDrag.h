// One drag from its start to its end.
#pragma once

#include "ui/DragGroup.h"

#include <QPointer>
#include <QWidget>

#include <boost/shared_ptr.hpp>

class QDrag;
class QPixmap;

/// What every source of a drag does: it registers the drag, runs it and takes it out again.
/// Interface thread.
class RunningDrag
{
public:
    /// Registers the drag for as long as this object lives.
    RunningDrag(QWidget* source, const boost::shared_ptr<DragGroup>& group);
    ~RunningDrag();
    Q_DISABLE_COPY_MOVE(RunningDrag)

    /// What other programs get from it.
    void setText(const QString& text);
    /// `hotSpot`: where in the picture the pointer is.
    void setPicture(const QPixmap& picture, const QPoint& hotSpot);
    /// Runs the drag in an event loop of its own; once. Returns whether it ended as a move.
    [[nodiscard]] bool exec();
    /// Whether the source was destroyed while the drag ran.
    [[nodiscard]] bool isOrphaned() const { return !m_source; }

private:
    QPointer<QWidget> m_source;
    QDrag* m_drag; // owned by the toolkit once it runs
    int m_id;
};
