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
/// From how many tasks on a loss of nine tenths of them is worth a backup of its own.
constexpr qsizetype manyTasks = 20;

template <typename Groups>
qsizetype listedTasks(const Groups& groups)
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
/// false if that failed.
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

TaskStorageCommiter::TaskStorageCommiter(TaskStorage* store, int intervalMs,
                                         const std::function<bool()>& guard)
    : m_store(store)
    , m_intervalMs(intervalMs)
    , m_guard(guard)
    , m_listedTasks(listedTasks(store->m_groups))
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
    if (isNew) {
        MVR_LOG_ERR(u"Fatal! Failed to start the commit thread"_s);
        // At such a limit the rest of the start may fail as well.
        dynamic_singleton<logging::LogHelper>::inst().flush();
    }
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
        // What a full disk did not take of the log before is tried again.
        dynamic_singleton<logging::LogHelper>::inst().flush();
    }
}

/// Waits for one interval at most, with m_mutex locked. Returns what is to be done.
TaskStorageCommiter::EPass TaskStorageCommiter::_waitForWakeUp()
{
    const QDeadlineTimer deadline(m_intervalMs);
    while (!m_ending && !m_hurrying && m_wakeUp.wait(&m_mutex, deadline)) {
    }
    const bool isHurried = m_hurrying.exchange(false);
    if (m_ending)
        return EPass::last;
    return isHurried ? EPass::hurried : EPass::routine;
}

void TaskStorageCommiter::_pass(EPass kind)
{
    _writeIfDue(kind);
    if (kind != EPass::last)
        _report();
    else if (_isFailing())
        MVR_LOG_ERR(u"The last changes could not be saved"_s);
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

void TaskStorageCommiter::_writeIfDue(EPass kind)
{
    QMutexLocker storeLock(&m_store->m_lock);
    if (!_isDue(kind, m_store->modification()))
        return;
    m_store->takeSnapshot(m_snapshot);
    const QMutexLocker commitLock(&m_commitMutex);
    storeLock.unlock();

    _commit(m_snapshot, true);
    m_lastCommitted = m_lastSeen;
    // A snapshot kept would make the store duplicate every record it changes.
    m_snapshot = TaskStorageSnapsot();
}

void TaskStorageCommiter::forcedCommit()
{
    {
        const QMutexLocker storeLock(&m_store->m_lock);
        TaskStorageSnapsot snapshot;
        m_store->takeSnapshot(snapshot);
        const QMutexLocker commitLock(&m_commitMutex);
        // Without a thread there are no passes.
        _commit(snapshot, !isRunning());
    }
    _report();
}

void TaskStorageCommiter::tryNow()
{
    if (!isRunning() && !begin()) {
        forcedCommit();
        return;
    }
    m_hurrying = true;
    // A mutex that is not to be had is held by a pass: the flag is seen before the next wait.
    if (m_mutex.tryLock(hurryTimeoutMs)) {
        m_wakeUp.wakeAll();
        m_mutex.unlock();
    }
}

/// `isPass`: whether a failure counts for what the user is told.
void TaskStorageCommiter::_commit(const TaskStorageSnapsot& snapshot, bool isPass)
{
    const CClock clock;
    const SafeWriteResult result = _write(snapshot);
    if (result.state == ESafeWrite::done || result.state == ESafeWrite::updateFailed)
        MVR_LOG_DEBUG(u"Database commit done in "_s + CClock::secondsText(clock.elapsed()));
    if (result.state == ESafeWrite::done)
        _noteSuccess(snapshot.modification());
    else if (snapshot.modification() != m_lastSaved)
        _noteFailure(result, isPass);
    else
        _logFailure(result); // nothing is unsaved: this state is on the disk already
}

SafeWriteResult TaskStorageCommiter::_write(const TaskStorageSnapsot& snapshot)
{
    const QString& path = m_store->databasePath();
    if (m_guard && !m_guard())
        return {ESafeWrite::openFailed, path, ENOENT};
    if (!setLoneBackupAside(path))
        return {ESafeWrite::openFailed, backupOf(path), errno};
    const auto write = [&snapshot](QIODevice& device) {
        return TaskStorageWriter().write(&device, snapshot);
    };
    return replaceFileSafely(path, write, [this, &path, &snapshot] {
        const qsizetype before = std::exchange(m_listedTasks, listedTasks(snapshot.groups()));
        m_backups.keep(backupOf(path), before >= manyTasks && m_listedTasks * 10 < before);
    });
}

void TaskStorageCommiter::_noteSuccess(qint32 modification)
{
    m_lastSaved = modification;
    _dropLeftover({});
    const QMutexLocker lock(&m_stateMutex);
    m_failure = {};
    m_failedPasses = 0;
}

/// Logs a failure when it begins and when its reason changes, not at every attempt.
void TaskStorageCommiter::_noteFailure(const SafeWriteResult& result, bool isPass)
{
    if (result.state == ESafeWrite::updateFailed)
        _dropLeftover(result.temporaryPath);
    bool isNew = false;
    {
        const QMutexLocker lock(&m_stateMutex);
        m_failedPasses += isPass ? 1 : 0;
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
    const QString& file = result.temporaryPath;
    MVR_LOG_ERR(failureText(result, m_store->databasePath(),
                            u"Fatal! Failed to open database for writing "_s + file,
                            u"Fatal! Failed to write database to "_s + file));
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
    return _failureToTell();
}

/// A file that cannot be written outweighs a thread that is missing.
CommitFailure TaskStorageCommiter::_failureToTell() const
{
    const int enough = m_noThread.cause == CommitFailure::none ? 2 : 1;
    return m_failedPasses < enough ? m_noThread : m_failure;
}

/// Tells of a failure at every attempt, and once of its end.
void TaskStorageCommiter::_report()
{
    CommitFailure shown;
    {
        const QMutexLocker lock(&m_stateMutex);
        shown = _failureToTell();
        const bool wasReported = std::exchange(m_isReported, shown.cause != CommitFailure::none);
        if (!wasReported && !m_isReported)
            return;
    }
    Q_EMIT m_store->commitStateChanged(shown);
}
