// The owner of the task store.
#pragma once

#include "net/taskapi/ITaskApiClientDelegate.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/history/TaskHistory.h"

#include <boost/shared_ptr.hpp>

#include <memory>

/// Creates the store, lends it to the rest of the program and lets it go last. Listens to the
/// program's task-server client. Reached through dynamic_singleton; interface thread.
class TaskCore : private taskapi::ITaskApiClientDelegate
{
public:
    TaskCore() = default;
    ~TaskCore() override;
    Q_DISABLE_COPY_MOVE(TaskCore)

    /// Opens the user's database; any store held before is released. `guard`: see
    /// TaskStorage::setGuard().
    [[nodiscard]] TaskStorage::ErrorType init(const std::function<bool()>& guard = {});

    /// The store; empty before init().
    [[nodiscard]] const boost::shared_ptr<TaskStorage>& storage() const { return m_storage; }
    /// What can be undone; null before init().
    [[nodiscard]] TaskHistory* history() const { return m_history.get(); }

private:
    // Places to act on finished server requests, in the threads that ran them; nothing is done with
    // them yet.
    void apiTaskCompleted(taskapi::TaskApiClient* client, taskapi::TaskApiRunnable* task) override;
    void apiTaskFailed(taskapi::TaskApiClient* client, taskapi::TaskApiRunnable* task) override;

    boost::shared_ptr<TaskStorage> m_storage;
    std::unique_ptr<TaskHistory> m_history; // goes before the store
};

/// The running program's store; only after TaskCore::init().
[[nodiscard]] TaskStorage& taskStorage();

/// Its history.
[[nodiscard]] TaskHistory& taskHistory();
