#include "taskdb/TaskStorageCommiter.h"

#include "app/base/CClock.h"
#include "app/base/CSafeFileUpdate.h"
#include "app/base/Clock.h"
#include "app/base/LogHelper.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageWriter.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QMutexLocker>

#include <cerrno>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int endTimeoutMs = 60000;
constexpr int hurryTimeoutMs = 50;
/// From how many tasks on it is worth a backup of its own when a tenth of them is left.
constexpr qsizetype manyTasks = 20;

template <typename Groups>
qsizetype listedIn(const Groups& groups)
{
    qsizetype count = 0;
    for (const FocusGroup& group : groups)
        count += group.tasks().size();
    return count;
}

QString backupOf(const QString& path)
{
    return path + u".bak"_s;
}

/// Gives a backup without its database a dated name, so that no commit ever replaces it. Returns
/// whether there is none of the old name left.
bool setLoneBackupAside(const QString& path)
{
    const QString backup = backupOf(path);
    if (QFile::exists(path) || !QFile::exists(backup))
        return true;
    const QString dated = backup + Clock::today().toString(u"-yyyy-MM-dd"_s);
    QString name = dated;
    for (int n = 2; QFile::exists(name); ++n)
        name = dated + u'_' + QString::number(n);
    return ::rename(QFile::encodeName(backup).constData(), QFile::encodeName(name).constData()) ==
           0;
}

} // namespace

TaskStorageCommiter::TaskStorageCommiter(TaskStorage* store, int intervalMs)
    : m_store(store)
    , m_intervalMs(intervalMs)
    , m_held(listedIn(store->m_groups))
    , m_backups(store->backupFolder())
{
}

TaskStorageCommiter::~TaskStorageCommiter()
{
    if (!isRunning()) {
        _pass(EPass::last);
        return;
    }
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

bool TaskStorageCommiter::begin()
{
    start();
    const bool isStarted = isRunning();
    bool isNew = false;
    {
        const QMutexLocker lock(&m_stateMutex);
        isNew = !isStarted && m_noThread.cause == CommitFailure::none;
        m_noThread.cause = isStarted ? CommitFailure::none : CommitFailure::thread;
        m_noThread.latest = Clock::now();
        if (isNew)
            m_noThread.since = m_noThread.latest;
    }
    if (isNew)
        MVR_LOG_ERR(u"Fatal! Failed to start the commit thread"_s);
    _report();
    return isStarted;
}

void TaskStorageCommiter::run()
{
    EPass kind = EPass::routine;
    while (kind != EPass::last) {
        const QMutexLocker lock(&m_mutex);
        kind = _waitForWakeUp();
        if (kind == EPass::last)
            MVR_LOG_DEBUG(u"Thread shutdown event has arrived"_s);
        _pass(kind);
        // Lines that a full disk kept back get their next chance.
        dynamic_singleton<logging::LogHelper>::inst().flush();
    }
}

/// Waits for one interval at most, with m_mutex locked. Returns what is to be done.
TaskStorageCommiter::EPass TaskStorageCommiter::_waitForWakeUp()
{
    const QDeadlineTimer deadline(m_intervalMs);
    while (!m_ending && !m_hurrying && m_wakeUp.wait(&m_mutex, deadline)) {
    }
    const bool isHurried = std::exchange(m_hurrying, false);
    if (m_ending)
        return EPass::last;
    return isHurried ? EPass::hurried : EPass::routine;
}

void TaskStorageCommiter::_pass(EPass kind)
{
    const bool isFailed = !_writeIfDue(kind);
    if (kind != EPass::last) {
        {
            const QMutexLocker lock(&m_stateMutex);
            m_failedPasses += isFailed ? 1 : 0;
        }
        _report();
    }
    m_backups.copyPending();
}

bool TaskStorageCommiter::_isDue(EPass kind, qint32 current)
{
    const bool isStill = current == m_lastSeen;
    m_lastSeen = current;
    if (kind == EPass::routine && !_isFailing())
        return isStill && current != m_lastCommitted;
    return current != m_lastSaved;
}

/// Returns false when it should have written and could not.
bool TaskStorageCommiter::_writeIfDue(EPass kind)
{
    QMutexLocker storeLock(&m_store->m_lock);
    if (!_isDue(kind, m_store->modification()))
        return true;
    m_store->takeSnapshot(m_snapshot);
    const QMutexLocker commitLock(&m_commitMutex);
    storeLock.unlock();

    const bool isWritten = _commit(m_snapshot);
    m_lastCommitted = m_lastSeen;
    // A snapshot kept would make the store duplicate every record it changes.
    m_snapshot = TaskStorageSnapsot();
    return isWritten;
}

void TaskStorageCommiter::forcedCommit()
{
    {
        const QMutexLocker storeLock(&m_store->m_lock);
        TaskStorageSnapsot snapshot;
        m_store->takeSnapshot(snapshot);
        const QMutexLocker commitLock(&m_commitMutex);
        _commit(snapshot);
    }
    _report();
}

void TaskStorageCommiter::tryNow()
{
    if (!isRunning() && !begin()) {
        forcedCommit();
        return;
    }
    // Not to be had means that a pass is trying already.
    if (!m_mutex.tryLock(hurryTimeoutMs))
        return;
    m_hurrying = true;
    m_wakeUp.wakeAll();
    m_mutex.unlock();
}

/// Returns whether the database file now holds the snapshot.
bool TaskStorageCommiter::_commit(const TaskStorageSnapsot& snapshot)
{
    const CClock clock;
    const SafeWriteResult result = _write(snapshot);
    if (result.state == ESafeWrite::done || result.state == ESafeWrite::updateFailed) {
        const qint64 elapsed = clock.elapsed();
        MVR_LOG_DEBUG(u"Database commit done in "_s + QString::number(elapsed / 1000) + u'.' +
                      QString::number(elapsed % 1000) + u's');
    }
    if (result.state != ESafeWrite::done) {
        _fail(result);
        return false;
    }
    _succeed(snapshot);
    return true;
}

SafeWriteResult TaskStorageCommiter::_write(const TaskStorageSnapsot& snapshot) const
{
    const QString& path = m_store->databasePath();
    if (!setLoneBackupAside(path))
        return {ESafeWrite::updateFailed, backupOf(path), errno};
    return replaceFileSafely(path, [&snapshot](QIODevice& device) {
        return TaskStorageWriter().write(&device, snapshot);
    });
}

void TaskStorageCommiter::_succeed(const TaskStorageSnapsot& snapshot)
{
    m_lastSaved = snapshot.modification();
    _dropLeftover({});
    const qsizetype held = std::exchange(m_held, listedIn(snapshot.groups()));
    m_backups.keep(backupOf(m_store->databasePath()), held >= manyTasks && m_held * 10 < held);
    const QMutexLocker lock(&m_stateMutex);
    m_failure = {};
    m_failedPasses = 0;
}

/// Logs a failure when it begins and when its reason changes, not at every attempt.
void TaskStorageCommiter::_fail(const SafeWriteResult& result)
{
    if (result.state == ESafeWrite::updateFailed)
        _dropLeftover(result.temporaryPath);
    bool isNew = false;
    {
        const QMutexLocker lock(&m_stateMutex);
        isNew = m_failure.cause == CommitFailure::none || m_failure.error != result.error;
        m_failure.cause = CommitFailure::file;
        m_failure.error = result.error;
        m_failure.latest = Clock::now();
        if (!m_failure.since.isValid())
            m_failure.since = m_failure.latest;
    }
    if (isNew)
        _logFailure(result);
}

void TaskStorageCommiter::_logFailure(const SafeWriteResult& result) const
{
    switch (result.state) {
    case ESafeWrite::openFailed:
        MVR_LOG_ERR(u"Fatal! Failed to open database for writing "_s + result.temporaryPath);
        return;
    case ESafeWrite::writeFailed:
        MVR_LOG_ERR(u"Fatal! Failed to write database to "_s + result.temporaryPath);
        return;
    case ESafeWrite::updateFailed:
        MVR_LOG_ERR(u"Safe file update failed. Updating "_s + m_store->databasePath() +
                    u" from "_s + result.temporaryPath);
        return;
    case ESafeWrite::done:
        return;
    }
}

/// Of the complete files that could not be swapped in only the newest is of use, and none once a
/// newer state is in place.
void TaskStorageCommiter::_dropLeftover(const QString& newer)
{
    if (!m_leftover.isEmpty() && m_leftover != newer)
        QFile::remove(m_leftover);
    m_leftover = newer;
}

bool TaskStorageCommiter::_isFailing() const
{
    const QMutexLocker lock(&m_stateMutex);
    return m_failure.cause != CommitFailure::none;
}

CommitFailure TaskStorageCommiter::failure() const
{
    const QMutexLocker lock(&m_stateMutex);
    return m_failedPasses > 1 ? m_failure : m_noThread;
}

/// Tells of a failure at every attempt, and once of its end.
void TaskStorageCommiter::_report()
{
    const CommitFailure shown = failure();
    {
        const QMutexLocker lock(&m_stateMutex);
        const bool wasReported = std::exchange(m_isReported, shown.cause != CommitFailure::none);
        if (!wasReported && !m_isReported)
            return;
    }
    Q_EMIT m_store->commitStateChanged(shown);
}
