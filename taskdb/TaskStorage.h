// The one in-memory database of tasks and groups.
#pragma once

#include "taskdb/CommitFailure.h"
#include "taskdb/FocusGroup.h"
#include "taskdb/TaskTable.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QRecursiveMutex>

#include <functional>
#include <memory>
#include <optional>

class QIODevice;
class QSessionManager;
struct SafeWriteResult;
struct StoreDelta;
struct StoreDifference;
class StoreJournal;
class TaskStorageCommiter;
class TaskStorageSnapsot;

/// Holds every task and group and has them written to the database file by a thread of its own.
/// Null and unknown identifiers are ignored by every operation. Operations hold a recursive lock
/// throughout, signals included: a handler in the same thread may call the store again.
/// Used from the interface thread; snapshots may be taken from any.
class TaskStorage : public QObject
{
    Q_OBJECT

public:
    enum ErrorType
    {
        NoError = 0,
        NewerVersion = 1,     ///< the file was written by a newer program
        CorruptedVersion = 2, ///< the file's version is missing or no number
        ReadFailure = 3,      ///< anything else; the file stays untouched
    };

    static const FocusGroup::Id ms_inboxId;
    static const FocusGroup::Id ms_trashId;
    static const FocusGroup::Id ms_completedId;

    /// `path`: the database file. Nothing is read before init().
    explicit TaskStorage(const QString& path, QObject* parent = nullptr);
    /// Writes pending changes, then ends the commit thread.
    ~TaskStorage() override;
    Q_DISABLE_COPY_MOVE(TaskStorage)

    /// Loads the database and starts the commit thread. A missing file starts empty, unless it or
    /// a folder on its path is a link that leads nowhere, as to a volume that is not mounted: that
    /// is a failure. After a failure nothing is ever written. What the store held before is
    /// written first, then dropped.
    [[nodiscard]] ErrorType init();
    /// Fills a new store from an open device, for a version that is only looked at: nothing is ever
    /// written, and what the store leaves out or adds to make it whole is not logged. What is no
    /// database is logged by the reader. Any thread, the store being its own.
    [[nodiscard]] ErrorType readOnly(QIODevice& device);
    /// How long the store must be still before it is written, in milliseconds; 60000 unless set.
    /// Takes effect at init().
    void setCommitInterval(int milliseconds) { m_commitInterval = milliseconds; }
    /// `guard` is asked before each commit, in the thread that makes it, whether the file is still
    /// this program's to write; a commit that it forbids fails as if the file's folder were
    /// missing. Takes effect at init().
    void setGuard(const std::function<bool()>& guard) { m_guard = guard; }
    /// Whether dated backups are made; they are unless set. Takes effect at the next commit.
    void setBackups(bool enabled);

    /// The desktop session is ending: writes the database at once.
    void commitDataRequest(QSessionManager& manager);
    /// The session manager wants the state saved, as it does at every log-in: writes the database
    /// at once if it changed since the last commit that succeeded.
    void saveStateRequest();
    /// The user cannot wait for the next attempt: has unsaved changes written at once. The outcome
    /// comes by commitStateChanged(), if the user has been told of a failure.
    void saveNow();
    /// Writes the present state to another file, in the calling thread.
    [[nodiscard]] SafeWriteResult saveCopy(const QString& path) const;
    /// What commitStateChanged() told last.
    [[nodiscard]] CommitFailure commitFailure() const;

    /// The file that is read and written, links followed as they led at init().
    [[nodiscard]] const QString& databasePath() const { return m_realPath; }
    /// Where dated backups lie; made with the first of them.
    [[nodiscard]] QString backupFolder() const;
    /// Counts every change; wraps from 2147483647 to 0.
    [[nodiscard]] qint32 modification() const;
    /// Counts one change, for callers that hold the lock.
    void _modify();
    [[nodiscard]] static qint32 nextModification(qint32 modification);
    void takeSnapshot(TaskStorageSnapsot& snapshot) const;

    [[nodiscard]] TodoTask get(const TodoTask::Id& taskId) const;
    [[nodiscard]] FocusGroup getGroup(const FocusGroup::Id& groupId) const;
    /// Inbox, Completed, Trash, then the custom groups in panel order.
    void enumGroups(QList<FocusGroup::Id>& ids) const;
    void enumGroup(const FocusGroup::Id& groupId, QList<TodoTask::Id>& ids) const;
    [[nodiscard]] static bool isCustom(const FocusGroup::Id& id);
    /// Trash or Completed: a task moves there out of every group.
    [[nodiscard]] static bool isArchive(const FocusGroup::Id& id);

    /// Creates an empty task at the end of the group, or of the Inbox if there is no such group.
    TodoTask::Id createTask(const FocusGroup::Id& groupId);
    void renameTask(const TodoTask::Id& taskId, const QString& name);
    void attachNotesToTask(const TodoTask::Id& taskId, const QString& notes);
    void setTaskDueTime(const TodoTask::Id& taskId, const QDateTime& time);
    /// Sets the flag and the given completion time; moves no task between groups.
    void completeTask(const TodoTask::Id& taskId, bool completed, const QDateTime& completionTime);
    /// Counts a change and emits also when the task was already there.
    void addTask(const FocusGroup::Id& groupId, const TodoTask::Id& taskId);
    void addTasks(const FocusGroup::Id& groupId, const QList<TodoTask::Id>& taskIds);
    /// A task that no group lists any more goes to the Trash, or nowhere with `skipTrash`.
    void removeTask(const FocusGroup::Id& groupId, const TodoTask::Id& taskId, bool skipTrash);
    /// Into Trash and Completed a task moves out of every group; into others, out of the source.
    void moveTasks(const FocusGroup::Id& fromGroupId, const FocusGroup::Id& toGroupId,
                   const QList<TodoTask::Id>& taskIds);
    /// Emits nothing.
    void reorderTasks(const FocusGroup::Id& groupId, const TodoTask::Id& anchorId, bool before,
                      const QList<TodoTask::Id>& taskIds);
    void emptyTrash();

    // Group operations emit nothing: whoever calls them refreshes what it shows.
    FocusGroup::Id createGroup(const QString& name, const QString& iconName);
    void renameGroup(const FocusGroup::Id& groupId, const QString& name);
    void setGroupIcon(const FocusGroup::Id& groupId, const QString& iconName);
    /// Its tasks go to the Trash, whichever other groups list them.
    void removeGroup(const FocusGroup::Id& groupId);
    /// Takes a custom group out of the order and inserts it at `position` of what remains.
    void moveGroup(int position, const FocusGroup::Id& groupId);
    /// Moves a custom group to the present place of another.
    void moveGroup(const FocusGroup::Id& placeGroupId, const FocusGroup::Id& groupId);

    /// From now on `journal` gets whatever changes replace; null ends that. Not owned.
    void setJournal(StoreJournal* journal);
    /// Drops what is in the store exactly as it is in `delta`.
    void prune(StoreDelta& delta) const;
    /// Puts records, groups and their order in place and leaves in `delta` what was there, so that
    /// the next exchange goes back. Counts one change and tells of every task and group that
    /// differs. Records that one side does not have are added, never erased: going back leaves them
    /// in no group. The journal gets nothing but the count.
    StoreDifference exchange(StoreDelta& delta);

    // Loading primitives: no lock, no counting, no signals.
    void _addGroup(const FocusGroup& group);
    void _setGroupIcon(const FocusGroup::Id& groupId, const QString& iconName);
    void _addTask(const TodoTask& task);
    /// Makes room for the tasks that the groups list.
    void _reserveTasks();

Q_SIGNALS:
    /// A task's fields changed.
    void taskChanged(const TodoTask::Id& taskId);
    /// A group's membership changed.
    void groupChanged(const FocusGroup::Id& groupId);
    /// Changes have failed to be written more than once in a row, once more, or, with the cause
    /// "none", no longer. Comes from any thread.
    void commitStateChanged(const CommitFailure& failure);

private:
    friend class TaskStorageCommiter;

    /// Entries of groups that no task belongs to, when they are removed.
    enum class EOrphans
    {
        logged,
        silent
    };

    [[nodiscard]] ErrorType _load();
    void _startCommiter();
    [[nodiscard]] bool _complete(EOrphans orphans);
    bool _validate(EOrphans orphans);
    void _createMissingGroup(const FocusGroup::Id& id, const QString& name);
    template <typename Change>
    void _changeTask(const TodoTask::Id& id, const Change& change);
    template <typename Change>
    bool _changeGroup(const FocusGroup::Id& id, const Change& change);
    template <typename Change>
    void _changeMembers(const FocusGroup::Id& id, const Change& change);
    [[nodiscard]] QList<FocusGroup::Id> _groupIds() const;
    [[nodiscard]] FocusGroup* _findGroup(const FocusGroup::Id& id);
    [[nodiscard]] int _countParentGroups(const TodoTask::Id& taskId) const;
    void _removeFromAllGroups(const TodoTask::Id& taskId);
    void _noteGroup(const FocusGroup::Id& id);
    void _noteOrder();
    void _exchangeGroup(const FocusGroup::Id& id, std::optional<GroupImage>& kept,
                        StoreDifference& difference);

    QString m_path;
    QString m_realPath;
    mutable QRecursiveMutex m_lock;
    qint32 m_modification = 0;
    QHash<FocusGroup::Id, FocusGroup> m_groups;
    QList<FocusGroup::Id> m_groupOrder;
    TaskTable m_tasks;
    int m_commitInterval = 60000;
    bool m_backups = true;
    std::function<bool()> m_guard;
    std::unique_ptr<TaskStorageCommiter> m_commiter;
    StoreJournal* m_journal = nullptr;
};
