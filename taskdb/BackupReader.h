// Looking at the earlier versions of the database: which there are, and what each of them holds.
#pragma once

#include "taskdb/TaskStorage.h"

#include <QDateTime>
#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <thread>

class TaskStorageSnapsot;

/// An earlier version of the database. The counts are those of a version that was read.
struct BackupVersion
{
    QString path{};
    QDateTime date{};     ///< local; the start of the day where the time is not known
    bool hasTime = false; ///< whether the time of day is known
    bool isLast = false;  ///< the version before the present one, instead of a dated backup
    TaskStorage::ErrorType error = TaskStorage::NoError;
    QString detail{};      ///< what the system said where the file could not be read, else empty
    qsizetype tasks = 0;   ///< how many are listed by groups other than the Trash, each once
    qsizetype groups = 0;  ///< how many groups of the user's own
    qsizetype missing = 0; ///< how many of the tasks no group of the present store lists
};

/// A version with all that it holds.
struct BackupContent
{
    BackupVersion version{};
    /// As lists, which are put together already; null if the version could not be read.
    std::shared_ptr<const TaskStorageSnapsot> snapshot{};
    /// The tasks that no group lists any more, in the order of the version's groups.
    QList<TodoTask::Id> missing{};
};

/// Reads the versions of a store's database in threads of its own; where the system has none to
/// give, one file per turn of the event loop. Leaves every file as it is. Interface thread.
class BackupReader : public QObject
{
    Q_OBJECT

public:
    /// `store`: the present one; must outlive this.
    explicit BackupReader(const TaskStorage& store, QObject* parent = nullptr);
    /// Waits for the file that is being read.
    ~BackupReader() override;
    Q_DISABLE_COPY_MOVE(BackupReader)

    /// Finds the versions and reads one after the other, the last version first, then the backups
    /// from the newest to the oldest. What is missing is counted against the store as it is now.
    /// To be called once.
    void readAll();

    /// Reads one version with its content, beside readAll(). One at a time.
    void load(const BackupVersion& version);

    /// Ends after the file that is being read, and is deleted then; does not wait for it.
    void retire();

Q_SIGNALS:
    void versionRead(const BackupVersion& version);
    /// There are no further versions.
    void allRead();
    /// The answer to load(), also where the version could not be read.
    void loaded(const BackupContent& content);

private:
    /// Reads a file and returns whether there is more to read.
    using Step = std::function<bool()>;

    void _run(std::jthread& thread, const Step& step);
    void _stepLater(const Step& step);
    void _onEnd();

    const TaskStorage& m_store;
    std::jthread m_reading;
    std::jthread m_loading;
    int m_running = 0;
    bool m_isRetired = false;
};
