#include "taskdb/TaskStorage.h"

#include "app/base/CClock.h"
#include "app/base/CSafeFileUpdate.h"
#include "app/base/LogHelper.h"
#include "app/base/PathHelper.h"
#include "taskdb/StoreDelta.h"
#include "taskdb/TaskStorageCommiter.h"
#include "taskdb/TaskStorageReader.h"
#include "taskdb/TaskStorageSnapsot.h"
#include "taskdb/TaskStorageWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QTimer>

#include <cerrno>
#include <limits>
#include <sys/stat.h>
#include <utility>

using namespace Qt::StringLiterals;

const FocusGroup::Id TaskStorage::ms_inboxId =
    FocusGroup::Id::fromString("{B78901E8-4787-4e9e-8977-F940608E4FB9}"_L1);
const FocusGroup::Id TaskStorage::ms_trashId =
    FocusGroup::Id::fromString("{86234C26-8E85-4c76-B80F-6046775B506A}"_L1);
const FocusGroup::Id TaskStorage::ms_completedId =
    FocusGroup::Id::fromString("{51E5F2F1-6282-4377-8A69-E26B937A47AD}"_L1);

namespace {

enum class EEntry
{
    missing,
    file,
    other
};

/// What lies at `path`. Only an entry that is certainly missing counts as missing: everything
/// else must open, or the program would in time overwrite what it could not read.
EEntry entryAt(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat info
    {
    };
    if (::lstat(name.constData(), &info) != 0)
        return errno == ENOENT && !PathHelper::isCutOff(path) ? EEntry::missing : EEntry::other;
    // Opening a pipe or a device could block for good.
    if (::stat(name.constData(), &info) != 0 || !S_ISREG(info.st_mode))
        return EEntry::other;
    return EEntry::file;
}

} // namespace

TaskStorage::TaskStorage(const QString& path, QObject* parent)
    : QObject(parent)
    , m_path(path)
    , m_realPath(path)
{
}

TaskStorage::~TaskStorage()
{
    m_commiter.reset();
}

TaskStorage::ErrorType TaskStorage::init()
{
    // Before the lock is taken: an earlier committer needs it for its last commit.
    m_commiter.reset();
    const QMutexLocker lock(&m_lock);
    m_groups.clear();
    m_groupOrder.clear();
    m_tasks = TaskTable();
    m_realPath = PathHelper::realPath(m_path);
    const EEntry entry = entryAt(m_path);
    if (entry != EEntry::missing) {
        const ErrorType error = entry == EEntry::file ? _load() : ReadFailure;
        if (error != NoError) {
            MVR_LOG_ERR(u"Database failed to load"_s);
            return error;
        }
    }
    const bool intact = _complete(EOrphans::logged);
    m_modification = intact ? 0 : 1;
    m_commiter = std::make_unique<TaskStorageCommiter>(this, m_commitInterval, m_guard);
    m_commiter->setBackups(m_backups);
    _startCommiter();
    return NoError;
}

TaskStorage::ErrorType TaskStorage::readOnly(QIODevice& device)
{
    const QMutexLocker lock(&m_lock);
    const ErrorType error = TaskStorageReader(this).read(&device);
    if (error == NoError)
        (void)_complete(EOrphans::silent);
    return error;
}

/// Tries again every interval until the system has a thread to give.
void TaskStorage::_startCommiter()
{
    if (m_commiter && !m_commiter->isRunning() && !m_commiter->begin())
        QTimer::singleShot(m_commitInterval, this, &TaskStorage::_startCommiter);
}

TaskStorage::ErrorType TaskStorage::_load()
{
    const CClock clock;
    QFile file(m_realPath);
    if (!file.open(QIODevice::ReadOnly))
        return ReadFailure;
    TaskStorageReader reader(this);
    const ErrorType error = reader.read(&file);
    if (error != NoError)
        return error;
    MVR_LOG_DEBUG(u"Database loaded in "_s + CClock::secondsText(clock.elapsed()));
    return NoError;
}

/// Whether what was loaded was free of orphans.
bool TaskStorage::_complete(EOrphans orphans)
{
    const bool intact = _validate(orphans);
    _createMissingGroup(ms_inboxId, u"Inbox"_s);
    _createMissingGroup(ms_trashId, u"Trash"_s);
    _createMissingGroup(ms_completedId, u"Completed"_s);
    return intact;
}

bool TaskStorage::_validate(EOrphans orphans)
{
    bool intact = true;
    for (FocusGroup& group : m_groups) {
        const QList<TodoTask::Id> ids = std::as_const(group).tasks().toList();
        for (auto id = ids.crbegin(); id != ids.crend(); ++id) {
            if (m_tasks.contains(*id))
                continue;
            if (orphans == EOrphans::logged) {
                MVR_LOG_WARN(u"Removing orphaned task id "_s + id->toString() + u" from "_s +
                             group.name() + u' ' + group.id().toString());
            }
            group._remove(*id);
            intact = false;
        }
    }
    return intact;
}

void TaskStorage::_createMissingGroup(const FocusGroup::Id& id, const QString& name)
{
    if (m_groups.contains(id))
        return;
    FocusGroup group;
    group.load(id.toString(), name);
    m_groups.insert(id, group);
}

void TaskStorage::commitDataRequest(QSessionManager& /*manager*/)
{
    if (!m_commiter)
        return;
    m_commiter->forcedCommit();
    MVR_LOG_DEBUG(u"commitDataRequest() received"_s);
}

void TaskStorage::saveStateRequest()
{
    if (m_commiter && modification() != m_commiter->lastSaved())
        m_commiter->forcedCommit();
}

void TaskStorage::setBackups(bool enabled)
{
    m_backups = enabled;
    if (m_commiter)
        m_commiter->setBackups(enabled);
}

QString TaskStorage::backupFolder() const
{
    return QFileInfo(m_path).absolutePath() + u"/backups"_s;
}

void TaskStorage::saveNow()
{
    if (m_commiter)
        m_commiter->tryNow();
}

SafeWriteResult TaskStorage::saveCopy(const QString& path) const
{
    TaskStorageSnapsot snapshot;
    takeSnapshot(snapshot);
    return writeFileSafely(path, EFileAccess::userOnly, [&snapshot](QIODevice& device) {
        return TaskStorageWriter().write(&device, snapshot);
    });
}

CommitFailure TaskStorage::commitFailure() const
{
    return m_commiter ? m_commiter->failure() : CommitFailure();
}

qint32 TaskStorage::modification() const
{
    const QMutexLocker lock(&m_lock);
    return m_modification;
}

void TaskStorage::_modify()
{
    m_modification = nextModification(m_modification);
    if (m_journal)
        m_journal->changeCounted();
}

qint32 TaskStorage::nextModification(qint32 modification)
{
    return modification == std::numeric_limits<qint32>::max() ? 0 : modification + 1;
}

void TaskStorage::takeSnapshot(TaskStorageSnapsot& snapshot) const
{
    // A copy of its own: what the snapshot held before is freed after the lock is released.
    TaskStorageSnapsot copy(snapshot.asTables());
    {
        const QMutexLocker lock(&m_lock);
        QList<FocusGroup> groups;
        groups.reserve(m_groups.size());
        for (const FocusGroup::Id& id : _groupIds()) {
            const auto group = m_groups.constFind(id);
            if (group != m_groups.constEnd())
                groups.append(*group);
        }
        copy.assign(m_modification, groups, m_tasks.pages());
    }
    snapshot = std::move(copy);
}

TodoTask TaskStorage::get(const TodoTask::Id& taskId) const
{
    const QMutexLocker lock(&m_lock);
    return m_tasks.value(taskId);
}

FocusGroup TaskStorage::getGroup(const FocusGroup::Id& groupId) const
{
    const QMutexLocker lock(&m_lock);
    return m_groups.value(groupId);
}

void TaskStorage::enumGroups(QList<FocusGroup::Id>& ids) const
{
    const QMutexLocker lock(&m_lock);
    ids = _groupIds();
}

void TaskStorage::enumGroup(const FocusGroup::Id& groupId, QList<TodoTask::Id>& ids) const
{
    const QMutexLocker lock(&m_lock);
    ids = m_groups.value(groupId).tasks().toList();
}

bool TaskStorage::isCustom(const FocusGroup::Id& id)
{
    return id != ms_inboxId && id != ms_completedId && id != ms_trashId;
}

bool TaskStorage::isArchive(const FocusGroup::Id& id)
{
    return id == ms_trashId || id == ms_completedId;
}

TodoTask::Id TaskStorage::createTask(const FocusGroup::Id& groupId)
{
    if (groupId.isNull())
        return {};
    const QMutexLocker lock(&m_lock);
    const FocusGroup::Id target = m_groups.contains(groupId) ? groupId : ms_inboxId;
    FocusGroup* group = _findGroup(target);
    if (!group)
        return {};
    _noteGroup(target);
    TodoTask task;
    task.create();
    m_tasks.insert(task);
    if (m_journal)
        m_journal->created.insert(task.id());
    group->_add(task.id());
    _modify();
    Q_EMIT groupChanged(target);
    return task.id();
}

/// Raises the modification counter and emits taskChanged() if `change` returns true: it did change
/// the task it was given.
template <typename Change>
void TaskStorage::_changeTask(const TodoTask::Id& id, const Change& change)
{
    const QMutexLocker lock(&m_lock);
    TodoTask* task = m_tasks.find(id);
    if (!task)
        return;
    const bool noted =
        m_journal && !m_journal->replaced.tasks.contains(id) && !m_journal->created.contains(id);
    const TodoTask before = noted ? *task : TodoTask();
    if (!change(*task))
        return;
    if (noted)
        m_journal->replaced.tasks.insert(id, before);
    _modify();
    Q_EMIT taskChanged(id);
}

/// Raises the modification counter, whatever `change` does. Returns whether there is such a group.
template <typename Change>
bool TaskStorage::_changeGroup(const FocusGroup::Id& id, const Change& change)
{
    const QMutexLocker lock(&m_lock);
    FocusGroup* group = _findGroup(id);
    if (!group)
        return false;
    _noteGroup(id);
    change(*group);
    _modify();
    return true;
}

/// The same, and emits groupChanged().
template <typename Change>
void TaskStorage::_changeMembers(const FocusGroup::Id& id, const Change& change)
{
    const QMutexLocker lock(&m_lock);
    if (_changeGroup(id, change))
        Q_EMIT groupChanged(id);
}

void TaskStorage::renameTask(const TodoTask::Id& taskId, const QString& name)
{
    _changeTask(taskId, [&name](TodoTask& task) { return task._rename(name); });
}

void TaskStorage::attachNotesToTask(const TodoTask::Id& taskId, const QString& notes)
{
    _changeTask(taskId, [&notes](TodoTask& task) { return task._setNotes(notes); });
}

void TaskStorage::setTaskDueTime(const TodoTask::Id& taskId, const QDateTime& time)
{
    _changeTask(taskId, [&time](TodoTask& task) { return task._setTimeDue(time); });
}

void TaskStorage::completeTask(const TodoTask::Id& taskId, bool completed,
                               const QDateTime& completionTime)
{
    _changeTask(taskId,
                [&](TodoTask& task) { return task._setCompleted(completed, completionTime); });
}

void TaskStorage::addTask(const FocusGroup::Id& groupId, const TodoTask::Id& taskId)
{
    if (!taskId.isNull())
        _changeMembers(groupId, [&taskId](FocusGroup& group) { group._add(taskId); });
}

void TaskStorage::addTasks(const FocusGroup::Id& groupId, const QList<TodoTask::Id>& taskIds)
{
    if (taskIds.isEmpty())
        return;
    _changeMembers(groupId, [&taskIds](FocusGroup& group) {
        for (const TodoTask::Id& id : taskIds)
            group._add(id);
    });
}

void TaskStorage::removeTask(const FocusGroup::Id& groupId, const TodoTask::Id& taskId,
                             bool skipTrash)
{
    const QMutexLocker lock(&m_lock);
    FocusGroup* group = _findGroup(groupId);
    if (!group || taskId.isNull() || !m_groups.contains(ms_trashId))
        return;
    if (!m_tasks.contains(taskId) && !std::as_const(*group).contains(taskId))
        return;
    _noteGroup(groupId);
    group->_remove(taskId);
    if (groupId == ms_trashId) {
        MVR_LOG_INFO(u"Delete task "_s + taskId.toString() + u" from trash"_s);
    } else if (_countParentGroups(taskId) == 0) {
        if (skipTrash) {
            MVR_LOG_INFO(u"Delete task "_s + taskId.toString() + u" skipping trash"_s);
        } else {
            MVR_LOG_INFO(u"Move task "_s + taskId.toString() + u" to trash"_s);
            _noteGroup(ms_trashId);
            _findGroup(ms_trashId)->_add(taskId);
        }
    }
    _modify();
    Q_EMIT groupChanged(groupId);
}

void TaskStorage::moveTasks(const FocusGroup::Id& fromGroupId, const FocusGroup::Id& toGroupId,
                            const QList<TodoTask::Id>& taskIds)
{
    const QMutexLocker lock(&m_lock);
    if (!m_groups.contains(fromGroupId) || !m_groups.contains(toGroupId))
        return;
    QList<TodoTask::Id> known;
    known.reserve(taskIds.size());
    const FocusGroup& source = *m_groups.constFind(fromGroupId);
    for (const TodoTask::Id& id : taskIds) {
        if (!id.isNull() && (m_tasks.contains(id) || source.contains(id)))
            known.append(id);
    }
    if (known.isEmpty())
        return;

    _noteGroup(toGroupId);
    // A handler may change the tables, so the groups are looked up anew after each emission.
    if (isArchive(toGroupId)) {
        for (const TodoTask::Id& id : std::as_const(known)) {
            _removeFromAllGroups(id);
            _noteGroup(toGroupId);
            if (FocusGroup* target = _findGroup(toGroupId))
                target->_add(id);
        }
    } else {
        _noteGroup(fromGroupId);
        for (const TodoTask::Id& id : std::as_const(known)) {
            m_groups[fromGroupId]._remove(id);
            m_groups[toGroupId]._add(id);
        }
        Q_EMIT groupChanged(fromGroupId);
    }
    Q_EMIT groupChanged(toGroupId);
    _modify();
}

void TaskStorage::reorderTasks(const FocusGroup::Id& groupId, const TodoTask::Id& anchorId,
                               bool before, const QList<TodoTask::Id>& taskIds)
{
    if (anchorId.isNull() || taskIds.isEmpty())
        return;
    _changeGroup(groupId, [&](FocusGroup& group) { group._reorder(anchorId, before, taskIds); });
}

void TaskStorage::emptyTrash()
{
    _changeMembers(ms_trashId, [](FocusGroup& trash) { trash._removeAll(); });
}

FocusGroup::Id TaskStorage::createGroup(const QString& name, const QString& iconName)
{
    const QMutexLocker lock(&m_lock);
    FocusGroup group;
    group.create();
    group._rename(name);
    group._setIconName(iconName);
    _noteGroup(group.id());
    _noteOrder();
    _addGroup(group);
    _modify();
    return group.id();
}

void TaskStorage::renameGroup(const FocusGroup::Id& groupId, const QString& name)
{
    _changeGroup(groupId, [&name](FocusGroup& group) { group._rename(name); });
}

void TaskStorage::setGroupIcon(const FocusGroup::Id& groupId, const QString& iconName)
{
    _changeGroup(groupId, [&iconName](FocusGroup& group) { group._setIconName(iconName); });
}

void TaskStorage::removeGroup(const FocusGroup::Id& groupId)
{
    const QMutexLocker lock(&m_lock);
    FocusGroup* trash = _findGroup(ms_trashId);
    if (!trash || !isCustom(groupId) || !m_groups.contains(groupId))
        return;
    _noteGroup(groupId);
    _noteGroup(ms_trashId);
    _noteOrder();
    const FocusGroup removed = m_groups.value(groupId);
    for (const TodoTask::Id& id : removed.tasks())
        trash->_add(id);
    m_groups.remove(groupId);
    m_groupOrder.removeAll(groupId);
    _modify();
}

void TaskStorage::moveGroup(int position, const FocusGroup::Id& groupId)
{
    const QMutexLocker lock(&m_lock);
    const qsizetype current = m_groupOrder.indexOf(groupId);
    if (current < 0 || position == current || position < 0 || position > m_groupOrder.size())
        return;
    _noteOrder();
    m_groupOrder.removeAt(current);
    // One past the end of the shortened list means its end.
    m_groupOrder.insert(qMin(qsizetype{position}, m_groupOrder.size()), groupId);
    _modify();
}

void TaskStorage::moveGroup(const FocusGroup::Id& placeGroupId, const FocusGroup::Id& groupId)
{
    const QMutexLocker lock(&m_lock);
    moveGroup(static_cast<int>(m_groupOrder.indexOf(placeGroupId)), groupId);
}

void TaskStorage::_addGroup(const FocusGroup& group)
{
    m_groups.insert(group.id(), group);
    if (isCustom(group.id()))
        m_groupOrder.append(group.id());
}

void TaskStorage::_setGroupIcon(const FocusGroup::Id& groupId, const QString& iconName)
{
    m_groups[groupId]._setIconName(iconName);
}

void TaskStorage::_addTask(const TodoTask& task)
{
    m_tasks.insert(task);
}

void TaskStorage::_reserveTasks()
{
    qsizetype members = 0;
    for (const FocusGroup& group : std::as_const(m_groups))
        members += group.tasks().size();
    m_tasks.reserve(members);
}

QList<FocusGroup::Id> TaskStorage::_groupIds() const
{
    return QList<FocusGroup::Id>{ms_inboxId, ms_completedId, ms_trashId} + m_groupOrder;
}

FocusGroup* TaskStorage::_findGroup(const FocusGroup::Id& id)
{
    const auto group = m_groups.find(id);
    return group == m_groups.end() ? nullptr : &*group;
}

int TaskStorage::_countParentGroups(const TodoTask::Id& taskId) const
{
    int count = 0;
    for (const FocusGroup& group : m_groups)
        count += group.contains(taskId) ? 1 : 0;
    return count;
}

void TaskStorage::_removeFromAllGroups(const TodoTask::Id& taskId)
{
    for (FocusGroup& group : m_groups) {
        if (!std::as_const(group).contains(taskId))
            continue;
        _noteGroup(group.id());
        group._remove(taskId);
    }
    const QList<FocusGroup::Id> ids = m_groups.keys();
    for (const FocusGroup::Id& id : ids)
        Q_EMIT groupChanged(id);
}
