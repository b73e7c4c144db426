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

    /// The texts of one task's children; kept between tasks for their capacity.
    struct TaskTexts
    {
        QString id, name, notes, completed, due, created, completedAt, deletedAt;
        void clear();
    };
    [[nodiscard]] QString* _textFor(QStringView element);

    TaskStorage* m_store;
    TaskTexts m_task;
    QString m_text;
};
