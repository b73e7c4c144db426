// The task server's client: sends requests, keeps the login.
#pragma once

#include "net/taskapi/ApiObject.h"
#include "net/taskapi/ITaskApiRunnableDelegate.h"
#include "net/taskapi/ServerSettings.h"

#include <QList>
#include <QMutex>
#include <QVariant>

#include <boost/shared_ptr.hpp>

#include <memory>

namespace taskapi {

class ClientLink;
class ITaskApiClientDelegate;
class TaskApiRunnable;

/// Requests run on the global thread pool, several at once. Each one that was sent ends in one
/// call of the delegate, while there is one. Any thread, unless a function says otherwise.
class TaskApiClient final : public ITaskApiRunnableDelegate
{
public:
    explicit TaskApiClient(const ServerSettings& server = {});
    /// Aborts what is under way, without telling the delegate, and waits for no more than a call of
    /// the delegate to return. Not from within one.
    ~TaskApiClient() override;
    Q_DISABLE_COPY_MOVE(TaskApiClient)

    /// The program's client, made by the first call and never destroyed.
    [[nodiscard]] static boost::shared_ptr<TaskApiClient> shared();

    /// Not owned; null for none. Once this returns, the former delegate is not being called and
    /// will not be. It is called in pool threads, one call at a time, and may use the client from
    /// there, but must not wait for another request, or for a thread that calls setDelegate().
    void setDelegate(ITaskApiClientDelegate* delegate);

    // These return at once. A program without a service sends nothing.
    void login(const QString& email, const QString& password);
    void logout();
    void createAccount(const QString& email, const QString& password, const QString& firstName,
                       const QString& lastName, const QVariant& meta);
    /// Sends nothing without a session that has a token and has not expired.
    void status(int revision);

    /// Has every request that is not over fail soon, and returns at once.
    void abortRequests();

    // The session lives in memory only: places to keep it for the next start.
    void loadSession();
    void saveSession();

    /// The answer to the last successful login.
    [[nodiscard]] QVariantMap session() const;
    [[nodiscard]] QVariantMap user() const;

    /// Called by requests through their ClientLink.
    void taskCompleted(TaskApiRunnable* task) override;
    [[nodiscard]] QString taskServerSecret() const override;
    [[nodiscard]] QString taskServerHost() const override;
    [[nodiscard]] quint16 taskServerPort() const override;
    [[nodiscard]] QString taskServerScheme() const override;
    [[nodiscard]] QString userAuthToken() const override;

private:
    void _runTask(std::unique_ptr<TaskApiRunnable> task);
    void _tellDelegate(TaskApiRunnable* task);

    const ServerSettings m_server;

    /// Locked during the delegate's calls, and before m_mutex where both are.
    const std::shared_ptr<ClientLink> m_link;
    ITaskApiClientDelegate* m_delegate = nullptr; ///< guarded by the link

    mutable QMutex m_mutex; ///< guards the rest
    ApiSession m_session;
    ApiUser m_user;
    QList<TaskApiRunnable*> m_tasks; ///< sent and not over
};

} // namespace taskapi
