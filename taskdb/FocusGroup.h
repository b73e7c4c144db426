// The record of one group of tasks.
#pragma once

#include "taskdb/TaskIdList.h"
#include "taskdb/TodoTask.h"

#include <QSharedDataPointer>
#include <QString>
#include <QUuid>

/// What a group is besides its identifier. Copying it takes constant time, and keeping it costs the
/// group as little as TaskIdList::Order does its list.
struct GroupImage
{
    QString name;
    QString iconName;
    TaskIdList::Order tasks;

    bool operator==(const GroupImage& other) const = default;
};

/// A named, ordered list of task identifiers, as an implicitly shared value. The setters change
/// this copy and then the shared store; the underscore forms change this copy only. Identifiers
/// come by value where the list loses some: they may be entries of it.
class FocusGroup
{
public:
    using Id = QUuid;

    /// Null identifier, empty name and icon name, no tasks.
    FocusGroup();
    FocusGroup(const FocusGroup& other);
    FocusGroup(FocusGroup&& other) noexcept;
    ~FocusGroup();
    FocusGroup& operator=(const FocusGroup& other);
    FocusGroup& operator=(FocusGroup&& other) noexcept;

    /// clear() and a fresh identifier.
    void create();
    /// Empties everything but the icon name, which stays.
    void clear();
    /// clear(), then the identifier from its text and the name. Returns whether the identifier
    /// is valid.
    bool load(QStringView id, const QString& name);

    [[nodiscard]] Id id() const;
    [[nodiscard]] QString name() const;
    /// Key into the icon catalogue; empty for none.
    [[nodiscard]] QString iconName() const;
    /// The tasks in display order.
    [[nodiscard]] const TaskIdList& tasks() const;
    /// False for the three built-in groups; true for any other identifier, the null one included.
    [[nodiscard]] bool isCustom() const;
    [[nodiscard]] bool contains(const TodoTask::Id& taskId) const;

    void rename(const QString& name);
    void setIconName(const QString& iconName);
    void add(const TodoTask::Id& taskId);
    /// `skipTrash`: a task left without a group vanishes instead of going to the Trash.
    void remove(TodoTask::Id taskId, bool skipTrash);
    void move(TodoTask::Id taskId, const Id& toGroupId);
    /// Moves the tasks, as one block, directly before or after the anchor, which must not be one
    /// of them.
    void reorder(TodoTask::Id anchorId, bool before, const QList<TodoTask::Id>& taskIds);

    // Each bool is whether the record changed.
    bool _rename(const QString& name);
    bool _setIconName(const QString& iconName);
    bool _add(const TodoTask::Id& taskId);
    bool _remove(TodoTask::Id taskId);
    void _removeAll();
    void _reorder(TodoTask::Id anchorId, bool before, const QList<TodoTask::Id>& taskIds);

    [[nodiscard]] GroupImage image() const;
    /// Takes over an image and leaves the present one in its place. Returns the tasks that are new
    /// to the group.
    QList<TodoTask::Id> _exchange(GroupImage& other);

private:
    struct Data;
    QSharedDataPointer<Data> d;
};

Q_DECLARE_TYPEINFO(FocusGroup, Q_RELOCATABLE_TYPE);
