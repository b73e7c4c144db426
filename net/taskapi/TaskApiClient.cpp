#include "net/taskapi/TaskApiClient.h"

#include "app/base/Clock.h"
#include "app/base/ProductHelper.h"
#include "net/taskapi/ClientLink.h"
#include "net/taskapi/ITaskApiClientDelegate.h"
#include "net/taskapi/TaskRequests.h"

#include <QMutexLocker>
#include <QThreadPool>

#include <boost/make_shared.hpp>

#include <utility>

using namespace Qt::StringLiterals;

namespace taskapi {

TaskApiClient::TaskApiClient(const ServerSettings& server)
    : m_server(server)
    , m_link(std::make_shared<ClientLink>(this))
{
}

TaskApiClient::~TaskApiClient()
{
    // Under one lock: in between, requests could end without leaving the list, or new ones begin.
    m_link->with([this](ITaskApiRunnableDelegate* /*client*/) {
        abortRequests();
        m_link->cut();
    });
}

boost::shared_ptr<TaskApiClient> TaskApiClient::shared()
{
    static const auto& client =
        *new boost::shared_ptr<TaskApiClient>(boost::make_shared<TaskApiClient>());
    return client;
}

void TaskApiClient::setDelegate(ITaskApiClientDelegate* delegate)
{
    m_link->with([&](ITaskApiRunnableDelegate* /*client*/) { m_delegate = delegate; });
}

void TaskApiClient::login(const QString& email, const QString& password)
{
    _runTask(std::make_unique<LoginReq>(email, password));
}

void TaskApiClient::logout()
{
    _runTask(std::make_unique<LogoutReq>());
}

void TaskApiClient::createAccount(const QString& email, const QString& password,
                                  const QString& firstName, const QString& lastName,
                                  const QVariant& meta)
{
    _runTask(std::make_unique<CreateAccountReq>(email, password, firstName, lastName, meta));
}

void TaskApiClient::status(int revision)
{
    const QVariantMap current = session();
    const QDateTime expires =
        QDateTime::fromString(current.value(u"expires"_s).toString(), Qt::ISODate);
    const bool hasToken = !current.value(u"token"_s).toString().isEmpty();
    if (hasToken && expires.isValid() && Clock::now() < expires)
        _runTask(std::make_unique<StatusReq>(revision));
}

void TaskApiClient::_runTask(std::unique_ptr<TaskApiRunnable> task)
{
    if (ProductHelper::serviceHost().isEmpty())
        return;
    task->setClient(m_link);
    const QMutexLocker lock(&m_mutex);
    m_tasks.append(task.get());
    QThreadPool::globalInstance()->start(task.release());
}

void TaskApiClient::abortRequests()
{
    const QMutexLocker lock(&m_mutex);
    for (TaskApiRunnable* task : std::as_const(m_tasks))
        task->abort();
}

void TaskApiClient::loadSession() {}

void TaskApiClient::saveSession() {}

QVariantMap TaskApiClient::session() const
{
    const QMutexLocker lock(&m_mutex);
    return m_session.dict();
}

QVariantMap TaskApiClient::user() const
{
    const QMutexLocker lock(&m_mutex);
    return m_user.dict();
}

void TaskApiClient::taskCompleted(TaskApiRunnable* task)
{
    {
        const QMutexLocker lock(&m_mutex);
        m_tasks.removeOne(task);
        const bool succeeded = task->error().code() == ApiErrorCode::success;
        if (succeeded && task->taskType() == TaskApiRunnable::Login)
            m_session.updateFromApiDict(task->result().toMap());
    }
    _tellDelegate(task);
    delete task;
}

void TaskApiClient::_tellDelegate(TaskApiRunnable* task)
{
    m_link->with([&](ITaskApiRunnableDelegate* /*client*/) {
        if (!m_delegate)
            return;
        if (task->error().code() == ApiErrorCode::success)
            m_delegate->apiTaskCompleted(this, task);
        else
            m_delegate->apiTaskFailed(this, task);
    });
}

QString TaskApiClient::taskServerSecret() const
{
    return m_server.secret;
}

QString TaskApiClient::taskServerHost() const
{
    return m_server.host;
}

quint16 TaskApiClient::taskServerPort() const
{
    return m_server.port;
}

QString TaskApiClient::taskServerScheme() const
{
    return m_server.scheme;
}

QString TaskApiClient::userAuthToken() const
{
    return session().value(u"token"_s).toString();
}

} // namespace taskapi
