#include "taskdb/ExportText.h"

#include "taskdb/TaskStorageSnapsot.h"

#include <QIODevice>

using namespace Qt::StringLiterals;

namespace {

void writeLine(QIODevice& device, const QString& line)
{
    device.write(line.toUtf8() + "\r\n");
}

void writeGroup(QIODevice& device, const FocusGroup& group,
                const TaskStorageSnapsot::RecordTable& tasks)
{
    writeLine(device, u'[' + group.name() + u']');
    for (const TodoTask::Id& id : group.tasks()) {
        const auto task = tasks.constFind(id);
        if (task != tasks.cend())
            writeLine(device, exportLine(*task));
    }
    writeLine(device, {});
}

} // namespace

QString exportLine(const TodoTask& task)
{
    return (task.completed() ? u"= "_s : u"- "_s) + task.toString();
}

void writeExportText(QIODevice& device, const TaskStorageSnapsot& snapshot,
                     const QList<FocusGroup::Id>& groups)
{
    for (const FocusGroup::Id& id : groups) {
        const auto group = snapshot.groupTable().constFind(id);
        if (group != snapshot.groupTable().cend())
            writeGroup(device, *group, snapshot.taskTable());
    }
}
