// The thread that writes the store to the database file.
#pragma once

#include "taskdb/TaskStorageSnapsot.h"

#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <atomic>

class TaskStorage;

/// Writes the store once it has been still for a whole interval, and when the program ends. The
/// store's lock is held for the copy only, never for the disk.
class TaskStorageCommiter : public QThread
{
    Q_OBJECT

public:
    /// `intervalMs`: how often to look, in milliseconds. The store outlives this object.
    TaskStorageCommiter(TaskStorage* store, int intervalMs);
    /// Has a pending change written, then ends the thread. Waits for a commit in progress.
    ~TaskStorageCommiter() override;
    Q_DISABLE_COPY_MOVE(TaskStorageCommiter)

    /// Writes the store now, in the calling thread, after any commit in progress.
    void forcedCommit();

    /// The store's counter at the last background commit, whether it succeeded or not.
    [[nodiscard]] qint32 lastCommitted() const { return m_lastCommitted; }

    /// One look at the store: writes it if it stood still since the last look and is not what was
    /// last written, or in the `last` pass if only the latter. The thread's own step.
    void _pass(bool last);

protected:
    void run() override;

private:
    bool _waitForWakeUp();
    void _commit(const TaskStorageSnapsot& snapshot);

    QMutex m_mutex;
    QWaitCondition m_wakeUp;
    TaskStorage* m_store;
    qint32 m_lastSeen = 0;
    std::atomic<qint32> m_lastCommitted = 0;
    TaskStorageSnapsot m_snapshot;

    int m_intervalMs;
    bool m_ending = false; // guarded by m_mutex: a wake-up before anybody waits is not lost
    // Held from before the store's lock is released until the file is in place, so that an older
    // snapshot never lands last and two commits never choose the same temporary file.
    QMutex m_commitMutex;
};
