#include "taskdb/FocusGroup.h"

#include "taskdb/IdText.h"
#include "taskdb/SharedStorage.h"
#include "taskdb/TaskStorage.h"

#include <utility>

struct FocusGroup::Data : QSharedData
{
    Id id;
    QString name;
    QString iconName;
    TaskIdList tasks;
};

FocusGroup::FocusGroup()
{
    static const QSharedDataPointer<Data> emptyRecord(new Data);
    d = emptyRecord;
}

FocusGroup::FocusGroup(const FocusGroup& other) = default;
FocusGroup::FocusGroup(FocusGroup&& other) noexcept = default;
FocusGroup::~FocusGroup() = default;
FocusGroup& FocusGroup::operator=(const FocusGroup& other) = default;
FocusGroup& FocusGroup::operator=(FocusGroup&& other) noexcept = default;

void FocusGroup::create()
{
    clear();
    d->id = Id::createUuid();
}

void FocusGroup::clear()
{
    const QString iconName = d.constData()->iconName;
    *this = FocusGroup();
    if (!iconName.isEmpty())
        d->iconName = iconName;
}

bool FocusGroup::load(QStringView id, const QString& name)
{
    clear();
    d->id = idFromText(id);
    d->name = name;
    return !d->id.isNull();
}

FocusGroup::Id FocusGroup::id() const
{
    return d->id;
}

QString FocusGroup::name() const
{
    return d->name;
}

QString FocusGroup::iconName() const
{
    return d->iconName;
}

const TaskIdList& FocusGroup::tasks() const
{
    return d->tasks;
}

bool FocusGroup::isCustom() const
{
    return TaskStorage::isCustom(d->id);
}

bool FocusGroup::contains(const TodoTask::Id& taskId) const
{
    return d->tasks.contains(taskId);
}

void FocusGroup::rename(const QString& name)
{
    if (_rename(name))
        writeThrough(&TaskStorage::renameGroup, id(), name);
}

void FocusGroup::setIconName(const QString& iconName)
{
    if (_setIconName(iconName))
        writeThrough(&TaskStorage::setGroupIcon, id(), iconName);
}

void FocusGroup::add(const TodoTask::Id& taskId)
{
    if (_add(taskId))
        writeThrough(&TaskStorage::addTask, id(), taskId);
}

void FocusGroup::remove(TodoTask::Id taskId, bool skipTrash)
{
    if (taskId.isNull())
        return;
    _remove(taskId);
    writeThrough(&TaskStorage::removeTask, id(), taskId, skipTrash);
}

void FocusGroup::move(TodoTask::Id taskId, const Id& toGroupId)
{
    if (taskId.isNull() || toGroupId.isNull())
        return;
    _remove(taskId);
    writeThrough(&TaskStorage::moveTasks, id(), toGroupId, QList{taskId});
}

void FocusGroup::reorder(TodoTask::Id anchorId, bool before, const QList<TodoTask::Id>& taskIds)
{
    _reorder(anchorId, before, taskIds);
    writeThrough(&TaskStorage::reorderTasks, id(), anchorId, before, taskIds);
}

// The comparisons read through constData(): a mere look must not detach a shared record.

bool FocusGroup::_rename(const QString& name)
{
    if (d.constData()->name == name)
        return false;
    d->name = name;
    return true;
}

bool FocusGroup::_setIconName(const QString& iconName)
{
    if (d.constData()->iconName == iconName)
        return false;
    d->iconName = iconName;
    return true;
}

bool FocusGroup::_add(const TodoTask::Id& taskId)
{
    return d->tasks.append(taskId);
}

bool FocusGroup::_remove(TodoTask::Id taskId)
{
    return std::as_const(*this).contains(taskId) && d->tasks.remove(taskId);
}

void FocusGroup::_removeAll()
{
    d->tasks.clear();
}

void FocusGroup::_reorder(TodoTask::Id anchorId, bool before, const QList<TodoTask::Id>& taskIds)
{
    d->tasks.reorder(anchorId, before, taskIds);
}

GroupImage FocusGroup::image() const
{
    return {d->name, d->iconName, d->tasks.order()};
}

QList<TodoTask::Id> FocusGroup::_exchange(GroupImage& other)
{
    std::swap(d->name, other.name);
    std::swap(d->iconName, other.iconName);
    return d->tasks.exchange(other.tasks);
}
