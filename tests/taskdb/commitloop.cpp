// Commits a growing database without end, for a test that kills this program meanwhile.
// Usage: commitloop DATABASE. After each commit it prints how many tasks are on the disk.

#include "app/base/LogHelper.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageCommiter.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    TaskStorage store(QCoreApplication::arguments().value(1));
    store.setCommitInterval(1);
    if (store.init() != TaskStorage::NoError) {
        std::puts("refused");
        return 1;
    }
    QList<TodoTask::Id> inbox;
    store.enumGroup(TaskStorage::ms_inboxId, inbox);
    for (qsizetype count = inbox.size() + 1;; ++count) {
        const TodoTask::Id id = store.createTask(TaskStorage::ms_inboxId);
        store.attachNotesToTask(id, QString(3000, u'n'));
        store.saveStateRequest();
        std::printf("%lld\n", static_cast<long long>(count));
        std::fflush(stdout);
    }
}
