// What a result tells about a task.
#pragma once

#include "taskdb/TodoTask.h"
#include "taskdb/search/TaskQuery.h"

#include <QDate>
#include <QIcon>
#include <QList>
#include <QString>

struct FoundTask
{
    struct Group
    {
        QString name;
        QIcon icon;
    };

    QString name; ///< on one line
    QList<TaskQuery::Range> nameMatches;
    QString notes; ///< the piece around the match, on one line; empty if none lies there
    QList<TaskQuery::Range> notesMatches;
    QList<Group> groups; ///< in the order of the panel
    QDate due;
    int daysToEvent = TodoTask::noDueDate;
    bool completed = false;
};

/// Reads a task and its groups from the program's store. Interface thread.
[[nodiscard]] FoundTask foundTask(const TodoTask::Id& id, const TaskQuery& query);

/// The same as a sentence, for screen readers.
[[nodiscard]] QString spokenText(const FoundTask& task);
