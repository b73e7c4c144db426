#include "net/taskapi/TaskApiRunnable.h"

#include "app/base/LogHelper.h"
#include "net/Json.h"

#include <QMutexLocker>
#include <QUrlQuery>

using namespace Qt::StringLiterals;

namespace taskapi {

namespace {
QString queryText(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

void addQueryItems(QUrl& url, const QVariantMap& items)
{
    QUrlQuery query(url);
    for (auto item = items.cbegin(); item != items.cend(); ++item)
        query.addQueryItem(queryText(item.key()), queryText(item.value().toString()));
    url.setQuery(query);
}

bool readAnswer(const net::HttpConnection& connection, const QUrl& url, const QByteArray& body,
                QVariant& result, ApiError& error)
{
    const int status = connection.statusCode();
    const QString text = QString::fromUtf8(body);
    result = QtJson::Json::parse(text);
    error = ApiError::create(status, body);
    MVR_LOG_DEBUG(url.toString() + u" [" + QString::number(status) + u"] - " + text);
    return error.code() == ApiErrorCode::success;
}
} // namespace

TaskApiRunnable::TaskApiRunnable()
{
    setAutoDelete(false);
}

TaskApiRunnable::~TaskApiRunnable() = default;

void TaskApiRunnable::run()
{
    m_error = _exchange();
    // A copy, since this object is deleted while the link is locked.
    const std::shared_ptr<ClientLink> link = m_client;
    if (!link)
        return;
    link->with([this](ITaskApiRunnableDelegate* client) {
        if (client)
            client->taskCompleted(this);
        else
            delete this;
    });
}

ApiError TaskApiRunnable::_exchange()
{
    boost::shared_ptr<net::HttpConnection> connection;
    {
        const QMutexLocker lock(&m_mutex);
        if (m_aborted)
            return ApiError::create(ApiErrorCode::connectionFailed);
        connection = net::HttpConnection::create();
        m_connection = connection.get();
    }
    if (connection)
        connection->setReferer(net::HttpConnection::programReferer());
    ApiError error = runWithConnection(connection);
    const QMutexLocker lock(&m_mutex);
    m_connection = nullptr;
    return error;
}

void TaskApiRunnable::abort()
{
    const QMutexLocker lock(&m_mutex);
    m_aborted = true;
    // Under the lock: the thread of the request destroys the connection.
    if (m_connection)
        m_connection->abort();
}

int TaskApiRunnable::taskType() const
{
    return Other;
}

ApiError
TaskApiRunnable::runWithConnection(const boost::shared_ptr<net::HttpConnection>& connection)
{
    ApiError error;
    if (!connection)
        return error;
    QUrl target = url();
    const net::HttpHeaders headers = _headers();
    if (method() == Post) {
        bool serialized = false;
        const QByteArray body = QtJson::Json::serialize(payload(), serialized);
        if (serialized)
            post(connection, target, headers, body, m_result, error);
    } else {
        addQueryItems(target, payload().toMap());
        get(connection, target, headers, m_result, error);
    }
    return error;
}

bool TaskApiRunnable::post(const boost::shared_ptr<net::HttpConnection>& connection,
                           const QUrl& url, const net::HttpHeaders& headers, const QByteArray& body,
                           QVariant& result, ApiError& error)
{
    QByteArray answer;
    if (!connection->post(url, body, answer, headers)) {
        error = ApiError::create(ApiErrorCode::connectionFailed);
        return false;
    }
    return readAnswer(*connection, url, answer, result, error);
}

bool TaskApiRunnable::get(const boost::shared_ptr<net::HttpConnection>& connection, const QUrl& url,
                          const net::HttpHeaders& headers, QVariant& result, ApiError& error)
{
    QByteArray answer;
    if (!connection->get(url, answer, headers)) {
        error = ApiError::create(ApiErrorCode::connectionFailed);
        return false;
    }
    return readAnswer(*connection, url, answer, result, error);
}

int TaskApiRunnable::method() const
{
    return Get;
}

QUrl TaskApiRunnable::urlForPath(const QString& path) const
{
    return askClient([&path](const ITaskApiRunnableDelegate& client) {
        QUrl url;
        url.setScheme(client.taskServerScheme());
        url.setHost(client.taskServerHost());
        url.setPort(client.taskServerPort());
        url.setPath(path);
        return url;
    });
}

QVariant TaskApiRunnable::payload() const
{
    return {};
}

net::HttpHeaders TaskApiRunnable::extraHeaders() const
{
    return {};
}

bool TaskApiRunnable::addAuthHeader() const
{
    return true;
}

net::HttpHeaders TaskApiRunnable::_headers() const
{
    net::HttpHeaders headers = extraHeaders();
    const QString token =
        addAuthHeader() ? askClient(&ITaskApiRunnableDelegate::userAuthToken) : QString();
    if (!token.isEmpty())
        headers.insert(u"Authorization"_s, u"OAuth2 "_s + token);
    return headers;
}

} // namespace taskapi
