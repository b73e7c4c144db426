// What a request asks of the client that sent it.
#pragma once

#include <QString>

namespace taskapi {

class TaskApiRunnable;

/// Called by requests, in the threads that run them.
class ITaskApiRunnableDelegate
{
public:
    /// The request is over and becomes the callee's to delete.
    virtual void taskCompleted(TaskApiRunnable* task) = 0;
    [[nodiscard]] virtual QString taskServerSecret() const = 0;
    [[nodiscard]] virtual QString taskServerHost() const = 0;
    [[nodiscard]] virtual quint16 taskServerPort() const = 0;
    [[nodiscard]] virtual QString taskServerScheme() const = 0;
    /// Empty while nobody is logged in.
    [[nodiscard]] virtual QString userAuthToken() const = 0;

    virtual ~ITaskApiRunnableDelegate();
};

} // namespace taskapi
