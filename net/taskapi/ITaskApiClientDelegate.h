// What the task-server client tells about its finished requests.
#pragma once

namespace taskapi {

class TaskApiClient;
class TaskApiRunnable;

/// Receives the outcome of task-server requests, in the threads that ran them.
class ITaskApiClientDelegate
{
public:
    virtual void apiTaskCompleted(TaskApiClient* client, TaskApiRunnable* task) = 0;
    virtual void apiTaskFailed(TaskApiClient* client, TaskApiRunnable* task) = 0;

    virtual ~ITaskApiClientDelegate();
};

} // namespace taskapi
