#include "net/taskapi/TaskApiClient.h"

#include "app/base/Clock.h"
#include "app/base/ProductHelper.h"
#include "net/taskapi/CreateAccountReq.h"
#include "net/taskapi/ITaskApiClientDelegate.h"
#include "net/taskapi/LoginReq.h"
#include "net/taskapi/LogoutReq.h"
#include "net/taskapi/StatusReq.h"

#include <QMutexLocker>
#include <QThreadPool>

#include <boost/make_shared.hpp>

using namespace Qt::StringLiterals;

namespace taskapi {

TaskApiClient::TaskApiClient(const ServerSettings& server)
    : m_server(server)
{
}

TaskApiClient::~TaskApiClient()
{
    // With no callback running or to come, nobody sends anything any more.
    setDelegate(nullptr);
    abortRequests();
}

boost::shared_ptr<TaskApiClient> TaskApiClient::shared()
{
    static const auto& client =
        *new boost::shared_ptr<TaskApiClient>(boost::make_shared<TaskApiClient>());
    return client;
}

void TaskApiClient::setDelegate(ITaskApiClientDelegate* delegate)
{
    const QMutexLocker lock(&m_delegateMutex);
    m_delegate = delegate;
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
    task->setClient(this);
    // Listed and started in one: abortRequests() finds it running or takes it back.
    const QMutexLocker lock(&m_mutex);
    // A delegate that answers failures with new requests must not keep abortRequests() for ever.
    if (m_aborts > 0)
        return;
    m_tasks.append(task.get());
    QThreadPool::globalInstance()->start(task.release());
}

void TaskApiClient::abortRequests(const QDeadlineTimer& deadline)
{
    for (TaskApiRunnable* task : _abortAll())
        task->run();
    const QMutexLocker lock(&m_mutex);
    while (!m_tasks.isEmpty() && m_noTasks.wait(&m_mutex, deadline)) {
    }
    --m_aborts;
}

/// Returns those that the pool will not run.
QList<TaskApiRunnable*> TaskApiClient::_abortAll()
{
    QList<TaskApiRunnable*> unstarted;
    const QMutexLocker lock(&m_mutex);
    ++m_aborts;
    for (TaskApiRunnable* task : std::as_const(m_tasks)) {
        task->abort();
        if (QThreadPool::globalInstance()->tryTake(task))
            unstarted.append(task);
    }
    return unstarted;
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
    const bool succeeded = task->error().code() == ApiErrorCode::success;
    if (succeeded && task->taskType() == TaskApiRunnable::Login) {
        const QMutexLocker lock(&m_mutex);
        m_session.updateFromApiDict(task->result().toMap());
    }
    _tellDelegate(task);

    // The last that this thread touches: a destructor that waits goes on with the unlocking.
    const QMutexLocker lock(&m_mutex);
    m_tasks.removeOne(task);
    delete task;
    if (m_tasks.isEmpty())
        m_noTasks.wakeAll();
}

void TaskApiClient::_tellDelegate(TaskApiRunnable* task)
{
    const QMutexLocker lock(&m_delegateMutex);
    if (!m_delegate)
        return;
    if (task->error().code() == ApiErrorCode::success)
        m_delegate->apiTaskCompleted(this, task);
    else
        m_delegate->apiTaskFailed(this, task);
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
