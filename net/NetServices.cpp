#include "net/NetServices.h"

#include "app/base/ProductHelper.h"
#include "app/base/UserMetrics.h"
#include "net/HttpConnection.h"

#include <QMutexLocker>
#include <QUrl>
#include <QUrlQuery>

#include <boost/make_shared.hpp>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto endTimeout = 10s;
constexpr auto terminationTimeout = 1s;
} // namespace

class NetServices::NetJob
{
public:
    NetJob() = default;
    virtual ~NetJob() = default;
    Q_DISABLE_COPY_MOVE(NetJob)

    /// Does the work, in the worker's thread.
    virtual void run(NetServices& services) const = 0;
};

class NetServices::CheckForUpdateJob final : public NetServices::NetJob
{
public:
    void run(NetServices& services) const override { services._checkForUpdates(); }
};

// Not destroyed with the statics at exit: its thread may still be using them.
boost::shared_ptr<NetServices>& NetServices::_instance()
{
    static auto& instance = *new boost::shared_ptr<NetServices>;
    return instance;
}

NetServices::~NetServices() = default;

void NetServices::_end(NetServices* services)
{
    services->_stop();
    if (!services->wait(QDeadlineTimer(endTimeout))) {
        services->terminate();
        if (!services->wait(QDeadlineTimer(terminationTimeout)))
            return;
    }
    delete services;
}

void NetServices::_stop()
{
    const QMutexLocker lock(&m_mutex);
    m_stop = true;
    if (m_connection)
        m_connection->abort();
    m_wakeUp.wakeAll();
}

boost::shared_ptr<NetServices> NetServices::shared()
{
    boost::shared_ptr<NetServices>& instance = _instance();
    if (!instance) {
        instance.reset(new NetServices, &NetServices::_end);
        qRegisterMetaType<UpdateInformation>();
        instance->start(InheritPriority);
    }
    return instance;
}

void NetServices::destroyShared()
{
    _instance().reset();
}

void NetServices::checkForUpdates(std::chrono::milliseconds delay)
{
    if (ProductHelper::serviceHost().isEmpty())
        return;
    const QMutexLocker lock(&m_mutex);
    m_jobs.append(boost::make_shared<CheckForUpdateJob>());
    m_rest.setRemainingTime(delay);
    m_wakeUp.wakeAll();
}

QString NetServices::httpReferer()
{
    return net::HttpConnection::programReferer();
}

void NetServices::run()
{
    while (const boost::shared_ptr<NetJob> job = _takeJob())
        _runJob(*job);
}

/// Waits for a job; null when the thread is to end.
boost::shared_ptr<NetServices::NetJob> NetServices::_takeJob()
{
    const QMutexLocker lock(&m_mutex);
    while (m_jobs.isEmpty() && !m_stop)
        m_wakeUp.wait(&m_mutex);
    while (!m_rest.hasExpired() && !m_stop)
        m_wakeUp.wait(&m_mutex, m_rest);
    return m_stop ? boost::shared_ptr<NetJob>() : m_jobs.takeFirst();
}

void NetServices::_runJob(const NetJob& job)
{
    job.run(*this);
}

void NetServices::_checkForUpdates()
{
    QUrlQuery query;
    query.addQueryItem(u"id"_s, UserMetrics::installationId());
    query.addQueryItem(u"p"_s, ProductHelper::productId());
    query.addQueryItem(u"v"_s, ProductHelper::productVersion().toString());
    QUrl url;
    url.setScheme(u"https"_s);
    url.setHost(ProductHelper::serviceHost());
    url.setPath(u"/updates"_s);
    url.setQuery(query);

    QByteArray response;
    const bool answered = _fetch(url, response);
    Q_EMIT updatesChecked(answered ? UpdateInformation(&response) : UpdateInformation());
}

bool NetServices::_fetch(const QUrl& url, QByteArray& response)
{
    const boost::shared_ptr<net::HttpConnection> connection = net::HttpConnection::create();
    connection->setReferer(httpReferer());
    {
        const QMutexLocker lock(&m_mutex);
        if (m_stop)
            return false;
        m_connection = connection;
    }
    const bool answered = connection->get(url, response, {});
    const QMutexLocker lock(&m_mutex);
    m_connection.reset();
    return answered;
}
