// Kills a program in the middle of its commits, again and again, and looks at what is left.
// Usage: killcommits ROUNDS. Ends with 1 when a version does not load or lacks a task.
//
// The program that is killed is this one. Its day is another one at each commit, so that each makes
// a backup and thins out the others.

#include "app/base/Clock.h"
#include "taskdb/TaskStorage.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// The number of tasks in a version of the database, or -1 when it does not load.
qsizetype tasksIn(const QString& path)
{
    TaskStorage store(path);
    const bool isLoaded = store.init() == TaskStorage::NoError;
    return isLoaded ? store.getGroup(TaskStorage::ms_inboxId).tasks().size() : -1;
}

/// Commits a growing database without end; after each commit it prints how many tasks are saved.
int grow(const QString& path)
{
    TaskStorage store(path);
    store.setCommitInterval(1);
    if (store.init() != TaskStorage::NoError)
        return 1;
    for (qsizetype count = tasksIn(path) + 1;; ++count) {
        Clock::freeze(Clock::now().addDays(1));
        store.attachNotesToTask(store.createTask(TaskStorage::ms_inboxId), QString(3000, u'n'));
        store.saveStateRequest();
        std::printf("%lld\n", static_cast<long long>(count));
        std::fflush(stdout);
    }
}

/// Starts the program and kills it after up to eight milliseconds of commits. Returns the number of
/// tasks that it said to have saved.
qsizetype killOnce(const QString& path)
{
    QProcess victim;
    victim.start(QCoreApplication::applicationFilePath(), {u"--victim"_s, path});
    victim.waitForReadyRead();
    QThread::usleep(QRandomGenerator::global()->bounded(8000));
    victim.kill();
    victim.waitForFinished();
    const QList<QByteArray> counts = victim.readAllStandardOutput().split('\n');
    // The last line may be cut off.
    return counts.size() > 1 ? counts.at(counts.size() - 2).toLongLong() : 0;
}

/// Every version there is must load.
bool areSound(const QString& folder)
{
    int others = 0;
    QDirIterator files(folder, {u"*.bak*"_s, u"database-*"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    for (; files.hasNext(); ++others) {
        if (tasksIn(files.next()) < 0)
            return false;
    }
    return others <= 1 + 7 + 5 + 12;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--victim"_L1)
        return grow(arguments.value(2));
    std::unique_ptr<QTemporaryDir> folder;
    for (int round = 0; round < arguments.value(1).toInt(); ++round) {
        if (round % 10 == 0)
            folder = std::make_unique<QTemporaryDir>();
        const QString path = folder->filePath(u"database.xml"_s);
        const qsizetype before = tasksIn(path);
        const qsizetype saved = qMax(before, killOnce(path));
        if (tasksIn(path) < saved || !areSound(folder->path())) {
            folder->setAutoRemove(false);
            std::printf("round %d: see %s\n", round, qPrintable(folder->path()));
            return 1;
        }
    }
}
