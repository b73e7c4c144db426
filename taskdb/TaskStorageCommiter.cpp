#include "taskdb/TaskStorageCommiter.h"

#include "app/base/CClock.h"
#include "app/base/CSafeFileUpdate.h"
#include "app/base/LogHelper.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageWriter.h"

#include <QDeadlineTimer>
#include <QMutexLocker>

using namespace Qt::StringLiterals;

namespace {
constexpr int endTimeoutMs = 60000;
}

TaskStorageCommiter::TaskStorageCommiter(TaskStorage* store, int intervalMs)
    : m_store(store)
    , m_intervalMs(intervalMs)
{
}

TaskStorageCommiter::~TaskStorageCommiter()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_ending = true;
        m_wakeUp.wakeAll();
    }
    if (!wait(endTimeoutMs)) {
        terminate();
        wait();
    }
}

void TaskStorageCommiter::run()
{
    bool last = false;
    while (!last) {
        const QMutexLocker lock(&m_mutex);
        last = _waitForWakeUp();
        if (last)
            MVR_LOG_DEBUG(u"Thread shutdown event has arrived"_s);
        _pass(last);
        // Lines that a full disk kept back get their next chance.
        dynamic_singleton<logging::LogHelper>::inst().flush();
    }
}

/// Waits for one interval at most, with m_mutex locked. Returns whether the thread is to end.
bool TaskStorageCommiter::_waitForWakeUp()
{
    const QDeadlineTimer deadline(m_intervalMs);
    while (!m_ending && m_wakeUp.wait(&m_mutex, deadline)) {
    }
    return m_ending;
}

void TaskStorageCommiter::_pass(bool last)
{
    QMutexLocker storeLock(&m_store->m_lock);
    const qint32 current = m_store->modification();
    if (last)
        m_lastSeen = current;
    if (current != m_lastSeen) {
        m_lastSeen = current;
        return;
    }
    if (m_lastSeen == m_lastCommitted)
        return;
    m_store->takeSnapshot(m_snapshot);
    const QMutexLocker commitLock(&m_commitMutex);
    storeLock.unlock();

    _commit(m_snapshot);
    m_lastCommitted = m_lastSeen;
    // A snapshot kept would make the store duplicate every record it changes.
    m_snapshot = TaskStorageSnapsot();
}

void TaskStorageCommiter::forcedCommit()
{
    const QMutexLocker storeLock(&m_store->m_lock);
    TaskStorageSnapsot snapshot;
    m_store->takeSnapshot(snapshot);
    const QMutexLocker commitLock(&m_commitMutex);
    _commit(snapshot);
}

void TaskStorageCommiter::_commit(const TaskStorageSnapsot& snapshot)
{
    const CClock clock;
    const QString& path = m_store->databasePath();
    const SafeWriteResult result = replaceFileSafely(path, [&snapshot](QIODevice& device) {
        return TaskStorageWriter().write(&device, snapshot);
    });
    switch (result.state) {
    case ESafeWrite::openFailed:
        MVR_LOG_ERR(u"Fatal! Failed to open database for writing "_s + result.temporaryPath);
        return;
    case ESafeWrite::writeFailed:
        MVR_LOG_ERR(u"Fatal! Failed to write database to "_s + result.temporaryPath);
        return;
    case ESafeWrite::done:
    case ESafeWrite::updateFailed:
        break;
    }
    const qint64 elapsed = clock.elapsed();
    MVR_LOG_DEBUG(u"Database commit done in "_s + QString::number(elapsed / 1000) + u'.' +
                  QString::number(elapsed % 1000) + u's');
    if (result.state == ESafeWrite::updateFailed) {
        MVR_LOG_ERR(u"Safe file update failed. Updating "_s + path + u" from "_s +
                    result.temporaryPath);
    }
}
