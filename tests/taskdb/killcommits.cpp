// Kills a program in the middle of its commits, again and again, and looks at what is left.
// Usage: killcommits ROUNDS [SEED]. Ends with 1 when a version does not load or lacks a task.
//
// The program that is killed is this one. Its day is another one at each commit, so that each makes
// a backup and thins out the others.

#include "app/base/Clock.h"
#include "taskdb/TaskStorage.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostTasks = 300;

/// The number of tasks in a version of the database, or -1 when it does not load.
qsizetype tasksIn(const QString& path)
{
    TaskStorage store(path);
    if (store.init() != TaskStorage::NoError)
        return -1;
    QList<TodoTask::Id> ids;
    store.enumGroup(TaskStorage::ms_inboxId, ids);
    return ids.size();
}

/// Commits a growing database without end; after each commit it prints how many tasks are saved.
int grow(const QString& path)
{
    TaskStorage store(path);
    store.setCommitInterval(1);
    if (store.init() != TaskStorage::NoError)
        return 1;
    qint64 now = Clock::nowMs();
    for (qsizetype count = tasksIn(path) + 1;; ++count) {
        constexpr qint64 day = 86'400'000;
        Clock::freeze(QDateTime::fromMSecsSinceEpoch(now += day));
        store.attachNotesToTask(store.createTask(TaskStorage::ms_inboxId), QString(3000, u'n'));
        store.saveStateRequest();
        std::printf("%lld\n", static_cast<long long>(count));
        std::fflush(stdout);
    }
}

/// Starts the program and kills it after up to eight milliseconds of commits. Returns the number of
/// tasks that it said to have saved.
qsizetype killOnce(const QString& path, QRandomGenerator& random)
{
    QProcess victim;
    victim.start(QCoreApplication::applicationFilePath(), {u"--victim"_s, path});
    victim.waitForReadyRead();
    QThread::usleep(random.bounded(8000));
    victim.kill();
    victim.waitForFinished();
    const QList<QByteArray> counts = victim.readAllStandardOutput().split('\n');
    // The last line may be cut off.
    return counts.size() > 1 ? counts.at(counts.size() - 2).toLongLong() : 0;
}

/// Every version there is must load, the newest with all that was saved.
bool isSound(const QDir& folder, qsizetype saved)
{
    const QString database = folder.filePath(u"database.xml"_s);
    bool sound = tasksIn(database) >= saved;
    QStringList others = QDir(folder.filePath(u"backups"_s)).entryList(QDir::Files);
    for (QString& name : others)
        name.prepend(u"backups/"_s);
    others += folder.entryList({u"*.bak*"_s});
    for (const QString& name : std::as_const(others))
        sound = sound && tasksIn(folder.filePath(name)) >= 0;
    return sound && others.size() <= 1 + 7 + 5 + 12;
}

int run(int rounds, quint32 seed)
{
    auto folder = std::make_unique<QTemporaryDir>();
    QRandomGenerator random(seed);
    qsizetype saved = 0;
    for (int round = 0; round < rounds; ++round) {
        if (saved > mostTasks) {
            folder = std::make_unique<QTemporaryDir>();
            saved = 0;
        }
        const QString path = folder->filePath(u"database.xml"_s);
        saved = qMax(saved, killOnce(path, random));
        if (!isSound(QDir(folder->path()), saved)) {
            folder->setAutoRemove(false);
            std::printf("round %d, seed %u: see %s\n", round, seed, qPrintable(folder->path()));
            return 1;
        }
        saved = tasksIn(path);
    }
    std::printf("%d rounds, seed %u: every version loads\n", rounds, seed);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--victim"_L1)
        return grow(arguments.value(2));
    if (arguments.value(1).toInt() <= 0) {
        std::fputs("usage: killcommits ROUNDS [SEED]\n", stderr);
        return 2;
    }
    return run(arguments.value(1).toInt(), arguments.value(2, u"7"_s).toUInt());
}
