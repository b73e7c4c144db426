// The task server's client: sends requests, keeps the login.
#pragma once

#include "net/taskapi/ApiObject.h"
#include "net/taskapi/ITaskApiRunnableDelegate.h"
#include "net/taskapi/ServerSettings.h"

#include <QDeadlineTimer>
#include <QList>
#include <QMutex>
#include <QRecursiveMutex>
#include <QVariant>
#include <QWaitCondition>

#include <boost/shared_ptr.hpp>

#include <memory>

namespace taskapi {

class ITaskApiClientDelegate;

/// Requests run on the global thread pool, several at once. Each one that was sent ends in one
/// call of the delegate, while there is one. Any thread, unless a function says otherwise.
class TaskApiClient final : public ITaskApiRunnableDelegate
{
public:
    explicit TaskApiClient(const ServerSettings& server = {});
    /// Aborts what is under way, without telling the delegate, and waits for it. Not from within a
    /// callback.
    ~TaskApiClient() override;
    Q_DISABLE_COPY_MOVE(TaskApiClient)

    /// The program's client, made by the first call. Nobody destroys it: at the program's end its
    /// requests are aborted by whoever listens to it.
    [[nodiscard]] static boost::shared_ptr<TaskApiClient> shared();

    /// Not owned; null for none. Once this returns, the former delegate is not being called and
    /// will not be. It is called in pool threads, one call at a time, and may use the client from
    /// there, but must not wait for another thread that calls setDelegate() or abortRequests().
    void setDelegate(ITaskApiClientDelegate* delegate);

    // These return at once. A program without a service sends nothing.
    void login(const QString& email, const QString& password);
    void logout();
    void createAccount(const QString& email, const QString& password, const QString& firstName,
                       const QString& lastName, const QVariant& meta);
    /// Sends nothing without a session that has a token and has not expired.
    void status(int revision);

    /// Fails every request that is not over and waits until none is left, or until the deadline.
    /// Those that the pool had not started end in this thread, the delegate's calls included.
    /// Meanwhile, calls that would send a request do nothing. Not from within a callback.
    void abortRequests(const QDeadlineTimer& deadline = QDeadlineTimer(QDeadlineTimer::Forever));

    // The session lives in memory only: places to keep it for the next start.
    void loadSession();
    void saveSession();

    /// The answer to the last successful login.
    [[nodiscard]] QVariantMap session() const;
    [[nodiscard]] QVariantMap user() const;

    void taskCompleted(TaskApiRunnable* task) override;
    [[nodiscard]] QString taskServerSecret() const override;
    [[nodiscard]] QString taskServerHost() const override;
    [[nodiscard]] quint16 taskServerPort() const override;
    [[nodiscard]] QString taskServerScheme() const override;
    [[nodiscard]] QString userAuthToken() const override;

private:
    void _runTask(std::unique_ptr<TaskApiRunnable> task);
    [[nodiscard]] QList<TaskApiRunnable*> _abortAll();
    void _tellDelegate(TaskApiRunnable* task);

    const ServerSettings m_server;

    /// Held during the delegate's calls. Taken before m_mutex where both are.
    QRecursiveMutex m_delegateMutex;
    ITaskApiClientDelegate* m_delegate = nullptr;

    mutable QMutex m_mutex; ///< guards the rest
    ApiSession m_session;
    ApiUser m_user;
    QList<TaskApiRunnable*> m_tasks; ///< owned: sent and not over
    QWaitCondition m_noTasks;
    int m_aborts = 0; ///< calls of abortRequests() under way
};

} // namespace taskapi
