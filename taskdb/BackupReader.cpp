#include "taskdb/BackupReader.h"

#include "app/base/OptionalThread.h"
#include "taskdb/DatabaseBackups.h"
#include "taskdb/TaskStorageSnapsot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using TaskSet = QSet<TodoTask::Id>;

/// The dated backups, from the newest to the oldest.
QList<BackupVersion> backupsIn(const QString& folder)
{
    QList<BackupVersion> versions;
    for (const QString& name : QDir(folder).entryList(QDir::Files, QDir::Name)) {
        const auto [day, time] = DatabaseBackups::stampOf(name);
        if (!day.isValid())
            continue;
        BackupVersion version;
        version.path = folder + u'/' + name;
        version.hasTime = time.isValid();
        version.date = version.hasTime ? QDateTime(day, time) : day.startOfDay();
        versions += version;
    }
    std::stable_sort(versions.begin(), versions.end(),
                     [](const auto& one, const auto& other) { return one.date > other.date; });
    return versions;
}

/// The version that the last commit set aside at `path`, if there is one.
QList<BackupVersion> lastVersion(const QString& path)
{
    const QFileInfo file(path);
    if (!file.isFile())
        return {};
    BackupVersion version;
    version.path = path;
    version.date = file.lastModified();
    version.hasTime = true;
    version.isLast = true;
    return {version};
}

/// What any group lists.
TaskSet listedTasks(const TaskStorageSnapsot& snapshot)
{
    TaskSet tasks;
    for (const FocusGroup& group : snapshot.groups())
        tasks.unite(TaskSet(group.tasks().begin(), group.tasks().end()));
    return tasks;
}

/// A snapshot of the store that does not hold up whoever lets go of it: to free a hundred thousand
/// tasks takes longer than a frame.
std::shared_ptr<const TaskStorageSnapsot> snapshotOf(const TaskStorage& store)
{
    const auto release = [](const TaskStorageSnapsot* snapshot) {
        std::jthread thread = startOptionalThread([snapshot] { delete snapshot; });
        if (thread.joinable())
            thread.detach();
        else
            delete snapshot;
    };
    const std::shared_ptr<TaskStorageSnapsot> snapshot(new TaskStorageSnapsot, release);
    store.takeSnapshot(*snapshot);
    return snapshot;
}

/// Counts what the snapshot of a version holds.
void count(BackupContent& content, const TaskSet& present)
{
    TaskSet seen;
    for (const FocusGroup& group : content.snapshot->groups()) {
        content.version.groups += group.isCustom() ? 1 : 0;
        if (group.id() == TaskStorage::ms_trashId)
            continue;
        for (const TodoTask::Id& id : group.tasks()) {
            const qsizetype before = seen.size();
            seen.insert(id);
            if (seen.size() > before && !present.contains(id))
                content.missing += id;
        }
    }
    content.version.tasks = seen.size();
    content.version.missing = content.missing.size();
}

/// `version`: without counts. `present`: what the present store lists.
BackupContent contentOf(const BackupVersion& version, const TaskSet& present)
{
    BackupContent content{.version = version};
    QFile file(version.path);
    TaskStorage store({});
    content.version.error =
        file.open(QIODevice::ReadOnly) ? store.readOnly(file) : TaskStorage::ReadFailure;
    if (file.error() != QFile::NoError)
        content.version.detail = file.errorString();
    if (content.version.error != TaskStorage::NoError)
        return content;
    content.snapshot = snapshotOf(store);
    count(content, present);
    return content;
}

/// What there is to read, and what it is compared with.
struct Pass
{
    QString lastPath;
    QString folder;
    TaskStorageSnapsot store;
    TaskSet present;
    QList<BackupVersion> pending;
    bool hasBegun = false;

    void begin()
    {
        if (std::exchange(hasBegun, true))
            return;
        pending = lastVersion(lastPath) + backupsIn(folder);
        present = listedTasks(store);
        // Held on to, it would cost the store a copy of all that it changes.
        store = TaskStorageSnapsot();
    }
};

} // namespace

BackupReader::BackupReader(const TaskStorage& store, QObject* parent)
    : QObject(parent)
    , m_store(store)
{
}

BackupReader::~BackupReader()
{
    m_reading.request_stop();
    m_loading.request_stop();
}

void BackupReader::readAll()
{
    auto pass = std::make_shared<Pass>();
    pass->lastPath = m_store.databasePath() + u".bak"_s;
    pass->folder = m_store.backupFolder();
    m_store.takeSnapshot(pass->store);
    _run(m_reading, [this, pass] {
        pass->begin();
        if (pass->pending.isEmpty()) {
            Q_EMIT allRead();
            return false;
        }
        Q_EMIT versionRead(contentOf(pass->pending.takeFirst(), pass->present).version);
        return true;
    });
}

void BackupReader::load(const BackupVersion& version)
{
    BackupVersion uncounted = version;
    uncounted.tasks = uncounted.groups = uncounted.missing = 0;
    auto present = std::make_shared<TaskStorageSnapsot>();
    m_store.takeSnapshot(*present);
    _run(m_loading, [this, uncounted, present] {
        const TaskSet tasks = listedTasks(*present);
        *present = TaskStorageSnapsot();
        Q_EMIT loaded(contentOf(uncounted, tasks));
        return false;
    });
}

void BackupReader::retire()
{
    m_isRetired = true;
    m_reading.request_stop();
    m_loading.request_stop();
    if (m_running == 0)
        deleteLater();
}

void BackupReader::_run(std::jthread& thread, const Step& step)
{
    ++m_running;
    thread = startOptionalThread([this, step](const std::stop_token& stop) {
        while (!stop.stop_requested() && step()) {
        }
        QMetaObject::invokeMethod(this, &BackupReader::_onEnd, Qt::QueuedConnection);
    });
    if (!thread.joinable())
        _stepLater(step);
}

void BackupReader::_stepLater(const Step& step)
{
    QTimer::singleShot(0, this, [this, step] {
        if (!m_isRetired && step())
            _stepLater(step);
        else
            _onEnd();
    });
}

void BackupReader::_onEnd()
{
    --m_running;
    if (m_isRetired && m_running == 0)
        deleteLater();
}
