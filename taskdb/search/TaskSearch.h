// Looks for tasks while the user types.
#pragma once

#include "taskdb/TodoTask.h"
#include "taskdb/search/SearchCorpus.h"

#include <QList>
#include <QObject>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

/// Searches a snapshot of the store in a thread of its own, which ends with this. Interface thread.
class TaskSearch : public QObject
{
    Q_OBJECT

public:
    /// `storage` is not owned and outlives this.
    explicit TaskSearch(const TaskStorage& storage, QObject* parent = nullptr);
    ~TaskSearch() override;
    Q_DISABLE_COPY_MOVE(TaskSearch)

    /// Looks for a text in the store as it is now; see TaskQuery. The search for an earlier one
    /// ends without another word. An empty text finds nothing, but has everything ready for the
    /// next one. Where the system has no thread to give, the calling one does the work.
    void start(const QString& text);

Q_SIGNALS:
    /// After start() has returned: the tasks, best first. `complete`: all of them, and the search
    /// has ended; else the best of those found so far.
    void found(const QList<TodoTask::Id>& ids, bool complete);

private:
    struct Job
    {
        quint32 number = 0;
        QString text;
    };

    void _work(const std::stop_token& stop);
    void _search(const Job& job, const std::stop_token& stop);
    void _deliver(const Job& job, const QList<TodoTask::Id>& ids, bool complete);

    const TaskStorage& m_storage;
    std::atomic<quint32> m_number = 0; // of the latest search
    std::mutex m_mutex;
    std::condition_variable_any m_wake;
    std::optional<Job> m_next; // guarded by the mutex
    SearchCorpus m_corpus;     // the worker's
    std::jthread m_thread;
};
