// What a row of the task list asks of whatever shows it.
#pragma once

class QRect;
class TaskWidget;

/// Implemented by the list; rows know nothing else of it.
class TaskRowHost
{
public:
    /// The row's edit is over; nothing if it is not the one being edited. `byReturn`: by a Return
    /// key, which the list is about to see as well.
    virtual void stopEditing(TaskWidget* row, bool byReturn) = 0;
    /// The edited row needs more or less room.
    virtual void rowHeightChanged(TaskWidget* row) = 0;
    /// Scrolls as little as needed to show `part`, in the edited row's own coordinates.
    virtual void showPartOfRow(TaskWidget* row, const QRect& part) = 0;

protected:
    ~TaskRowHost() = default;
};
