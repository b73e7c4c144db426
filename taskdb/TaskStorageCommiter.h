// The thread that writes the store to the database file.
#pragma once

#include "taskdb/CommitFailure.h"
#include "taskdb/DatabaseBackups.h"
#include "taskdb/TaskStorageSnapsot.h"

#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <atomic>
#include <functional>

class TaskStorage;
struct SafeWriteResult;

/// Writes the store once it has been still for a whole interval, and when the program ends; what
/// could not be written is tried again every interval. The store's lock is held for the copy only,
/// never for the disk.
class TaskStorageCommiter : public QThread
{
    Q_OBJECT

public:
    /// `intervalMs`: how often to look, in milliseconds. `guard`: asked before each commit, if
    /// there is one. The store outlives this object.
    TaskStorageCommiter(TaskStorage* store, int intervalMs,
                        const std::function<bool()>& guard = {});
    /// Has a pending change written, then ends the thread. Waits for a commit in progress. Where
    /// there is no thread the calling one writes.
    ~TaskStorageCommiter() override;
    Q_DISABLE_COPY_MOVE(TaskStorageCommiter)

    /// Starts the thread. Returns false when the system has none to give; may be called again.
    bool begin();

    /// Writes the store now, in the calling thread, after any commit in progress.
    void forcedCommit();

    /// Has the thread write what is unsaved at once. Returns immediately, unless there is no thread
    /// and none can be started: then the calling one writes.
    void tryNow();

    /// The store's counter at the last commit that succeeded.
    [[nodiscard]] qint32 lastSaved() const { return m_lastSaved; }

    /// What the user should know: a failure counts once two passes in a row have met it.
    [[nodiscard]] CommitFailure failure() const;

    void setBackups(bool enabled) { m_backups.setEnabled(enabled); }

    enum class EPass
    {
        routine, ///< writes what stood still since the last look, or has failed to be written
        hurried, ///< writes whatever is unsaved
        last,    ///< the same, when there is nobody left to be told of a failure
    };
    /// One look at the store: the thread's own step.
    void _pass(EPass kind);

protected:
    void run() override;

private:
    [[nodiscard]] EPass _waitForWakeUp();
    [[nodiscard]] bool _isDue(EPass kind, qint32 current);
    void _writeIfDue(EPass kind);
    void _commit(const TaskStorageSnapsot& snapshot, bool isPass);
    [[nodiscard]] SafeWriteResult _write(const TaskStorageSnapsot& snapshot);
    void _noteSuccess(qint32 modification);
    void _noteFailure(const SafeWriteResult& result, bool isPass);
    void _logFailure(const SafeWriteResult& result) const;
    void _dropLeftover(const QString& newer);
    [[nodiscard]] bool _isFailing() const;
    [[nodiscard]] CommitFailure _failureToTell() const;
    void _report();

    QMutex m_mutex;
    QWaitCondition m_wakeUp;
    TaskStorage* m_store;
    qint32 m_lastSeen = 0;
    qint32 m_lastCommitted = 0; // by a pass, whether it succeeded or not
    std::atomic<qint32> m_lastSaved = 0;
    TaskStorageSnapsot m_snapshot;

    int m_intervalMs;
    std::function<bool()> m_guard;
    bool m_ending = false; // guarded by m_mutex: a wake-up before anybody waits is not lost
    std::atomic<bool> m_hurrying = false;
    // Held from before the store's lock is released until the file is in place, so that an older
    // snapshot never lands last and two commits never choose the same temporary file.
    QMutex m_commitMutex;
    QString m_leftover;          // the newest temporary file that could not be swapped in
    qsizetype m_listedTasks = 0; // by the groups of the last version
    DatabaseBackups m_backups;

    mutable QMutex m_stateMutex; // guards what follows; nothing else is locked under it
    CommitFailure m_failure;
    CommitFailure m_noThread;
    int m_failedPasses = 0;
    bool m_isReported = false;
};
