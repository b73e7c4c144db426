// Stores for tests, built in a few words.
#pragma once

#include "taskdb/TaskStorage.h"

#include <QTemporaryDir>

/// A store on a file of its own, loaded and committing.
class StoreBuilder
{
public:
    /// `database`: a file whose copy the store opens; none starts empty. `commitInterval`: in
    /// milliseconds.
    explicit StoreBuilder(const QString& database = {}, int commitInterval = 60000)
        : store(m_dir.filePath(QStringLiteral("database.xml")))
    {
        if (!database.isEmpty())
            QFile::copy(database, path());
        store.setCommitInterval(commitInterval);
        result = store.init();
    }

    [[nodiscard]] QString path() const { return m_dir.filePath(QStringLiteral("database.xml")); }
    [[nodiscard]] QString folder() const { return m_dir.path(); }

    [[nodiscard]] TodoTask::Id task(const FocusGroup::Id& group, const QString& name)
    {
        const TodoTask::Id id = store.createTask(group);
        store.renameTask(id, name);
        return id;
    }

    [[nodiscard]] QList<TodoTask::Id> members(const FocusGroup::Id& group) const
    {
        QList<TodoTask::Id> ids;
        store.enumGroup(group, ids);
        return ids;
    }

private:
    QTemporaryDir m_dir;

public:
    TaskStorage store;
    TaskStorage::ErrorType result = TaskStorage::ReadFailure;
};
