// The way from requests to their client.
#pragma once

#include <QMutexLocker>
#include <QRecursiveMutex>

namespace taskapi {

class ITaskApiRunnableDelegate;

/// Shared by a client and its requests, which may outlive it. Any thread.
class ClientLink
{
public:
    explicit ClientLink(ITaskApiRunnableDelegate* client)
        : m_client(client)
    {
    }

    /// Calls `use` with the client, or with null once it is gone, one call at a time; the client
    /// does not go meanwhile. `use` may come back here. Returns what `use` returns.
    template <typename Use>
    auto with(Use use)
    {
        const QMutexLocker lock(&m_mutex);
        return use(m_client);
    }

    /// For the client when it goes: once this returns, no request is calling it, or will.
    void cut()
    {
        const QMutexLocker lock(&m_mutex);
        m_client = nullptr;
    }

private:
    QRecursiveMutex m_mutex;
    ITaskApiRunnableDelegate* m_client;
};

} // namespace taskapi
