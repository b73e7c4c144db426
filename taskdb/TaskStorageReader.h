// Reading the database file.
#pragma once

#include "app/base/BasicXmlReader.h"
#include "taskdb/TaskStorage.h"

/// Fills a store from a database document. One document per reader.
class TaskStorageReader : public BasicXmlReader
{
public:
    explicit TaskStorageReader(TaskStorage* store);

    /// Reads from an open device. After a failure the store holds what was read before it.
    [[nodiscard]] TaskStorage::ErrorType read(QIODevice* device);

private:
    void _readRoot();
    bool _checkVersion();
    void _readGroups();
    void _readGroup();
    void _readTasks();
    void _readTask();

    void _readTaskChild(QStringView element);

    /// The texts of one task's children.
    struct TaskTexts
    {
        QString name, notes;
        ShortText id, completed, due, created, completedAt, deletedAt;
        void clear();
    };

    TaskStorage* m_store;
    TaskTexts m_task;
    ShortText m_text;
};
