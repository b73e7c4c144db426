#include "net/HttpConnectionQt.h"

#include "app/base/LogHelper.h"
#include "net/PinnedCertificate.h"
#include "net/ProxyLookup.h"
#include "net/Tls.h"

#include <QBuffer>
#include <QEventLoop>
#include <QMutexLocker>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace net {

namespace {
constexpr int maxRedirects = 10;
constexpr int chunkSize = 2048;

bool isSecure(const QUrl& url)
{
    return url.scheme() == "https"_L1;
}

constexpr auto tooLarge = "The answer is too large"_L1;
constexpr auto canceled = "Operation canceled"_L1;

/// A text that a server may have had its hands in, fit for one line of the log.
QString forLog(const QString& text)
{
    constexpr qsizetype longest = 500;
    QString line = text.left(longest);
    for (QChar& c : line) {
        if (!c.isPrint())
            c = u' ';
    }
    return line;
}

/// Hands the manager what is known already.
class FoundProxies final : public QNetworkProxyFactory
{
public:
    explicit FoundProxies(const QList<QNetworkProxy>& proxies)
        : m_proxies(proxies)
    {
    }
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& /*query*/) override
    {
        return m_proxies;
    }

private:
    QList<QNetworkProxy> m_proxies;
};

/// Moves what has arrived to `buffer`. Returns whether that is not too much.
bool readAnswer(QNetworkReply& reply, QBuffer& buffer)
{
    QByteArray chunk;
    do {
        chunk = reply.readAll();
        if (buffer.size() + chunk.size() > HttpConnectionQt::maxAnswer)
            return false;
        buffer.write(chunk);
    } while (chunk.size() >= chunkSize);
    return true;
}
} // namespace

struct HttpConnectionQt::Exchange
{
    QUrl url;
    const QByteArray* body; ///< of a post

    [[nodiscard]] bool mayGoTo(const QUrl& target) const
    {
        return isSecure(target) || (target.scheme() == "http"_L1 && !isSecure(url));
    }
};

HttpConnectionQt::HttpConnectionQt() = default;

HttpConnectionQt::~HttpConnectionQt() = default;

bool HttpConnectionQt::open(const QString& /*host*/, unsigned short /*port*/)
{
    return true;
}

bool HttpConnectionQt::close()
{
    return true;
}

bool HttpConnectionQt::get(const QUrl& url, QByteArray& response, const HttpHeaders& /*headers*/)
{
    return _request({url, nullptr}, response);
}

bool HttpConnectionQt::post(const QUrl& url, const QByteArray& body, QByteArray& response,
                            const HttpHeaders& /*headers*/)
{
    return _request({url, &body}, response);
}

int HttpConnectionQt::statusCode() const
{
    return -1;
}

qint64 HttpConnectionQt::contentLength() const
{
    return -1;
}

int HttpConnectionQt::read(QIODevice& /*out*/, int /*max*/)
{
    return -1;
}

QString HttpConnectionQt::referer() const
{
    return m_referer;
}

void HttpConnectionQt::setReferer(const QString& referer)
{
    m_referer = referer;
}

void HttpConnectionQt::abort()
{
    const QMutexLocker lock(&m_mutex);
    m_aborted = true;
    // Queued: a loop that has not started yet would forget a direct call.
    if (m_lookup)
        m_lookup->cancel();
    if (m_loop)
        QMetaObject::invokeMethod(m_loop, &QEventLoop::quit, Qt::QueuedConnection);
}

bool HttpConnectionQt::_request(const Exchange& exchange, QByteArray& response)
{
    response.clear();
    QBuffer buffer(&response);
    buffer.open(QIODevice::WriteOnly);
    response.reserve(chunkSize);

    QNetworkReply* reply = nullptr;
    QString error = _follow(exchange, reply);
    if (error.isEmpty() && !readAnswer(*reply, buffer))
        error = tooLarge;
    if (reply)
        reply->deleteLater();
    if (error.isEmpty())
        return true;
    MVR_LOG_ERR(u"some error happened "_s + forLog(error));
    return false;
}

/// Sends the request, and sends it on from redirect to redirect; `reply` is the last one's.
/// Returns what went wrong, or an empty text.
QString HttpConnectionQt::_follow(const Exchange& exchange, QNetworkReply*& reply)
{
    QUrl target = exchange.url;
    for (int redirects = 0;; ++redirects) {
        if (!exchange.mayGoTo(target))
            return u"The address is not allowed: "_s + target.toDisplayString();
        if (!_findProxies(target))
            return canceled;
        reply = _issue(exchange, target);
        if (!reply)
            return u"No request could be made"_s;
        // Whoever redirects that often is still asked, but not listened to.
        if (redirects == maxRedirects)
            return {};
        const QString error = _await(*reply);
        const QVariant redirect = reply->attribute(QNetworkRequest::RedirectionTargetAttribute);
        if (!error.isEmpty() || !redirect.isValid())
            return error;
        std::exchange(reply, nullptr)->deleteLater();
        target = exchange.url.resolved(redirect.toUrl());
    }
}

/// Returns false when that took too long or was aborted, before or during it.
bool HttpConnectionQt::_findProxies(const QUrl& url)
{
    {
        const QMutexLocker lock(&m_mutex);
        if (m_aborted)
            return false;
        m_lookup = std::make_shared<ProxyLookup>(url);
    }
    const std::optional<QList<QNetworkProxy>> proxies = m_lookup->wait(m_timeout);
    if (proxies)
        _manager().setProxyFactory(new FoundProxies(*proxies));
    return proxies.has_value();
}

QNetworkAccessManager& HttpConnectionQt::_manager()
{
    if (!m_manager) {
        ensureTls();
        m_manager = std::make_unique<QNetworkAccessManager>();
    }
    return *m_manager;
}

QNetworkReply* HttpConnectionQt::_issue(const Exchange& exchange, const QUrl& url)
{
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", m_referer.toLatin1());
    // Unpacked, an answer could take any amount of memory before its size is known.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    // A single short answer gains nothing from the newer protocol's machinery.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setTransferTimeout(static_cast<int>(m_timeout.count()));
    QNetworkReply* const reply =
        exchange.body ? _manager().post(request, *exchange.body) : _manager().get(request);
    if (reply && isSecure(url))
        excusePinnedCertificate(*reply);
    return reply;
}

/// Blocks until the reply is finished, has grown too large or is to be aborted. Returns what went
/// wrong, or an empty text.
QString HttpConnectionQt::_await(QNetworkReply& reply)
{
    QEventLoop loop;
    QObject::connect(m_manager.get(), &QNetworkAccessManager::finished, &loop, &QEventLoop::quit);
    QObject::connect(&reply, &QIODevice::readyRead, &loop, [&loop, &reply] {
        if (reply.bytesAvailable() > maxAnswer)
            loop.quit();
    });
    _run(loop);
    if (reply.bytesAvailable() > maxAnswer)
        return tooLarge;
    if (!reply.isFinished())
        reply.abort();
    return reply.error() == QNetworkReply::NoError ? QString() : reply.errorString();
}

/// Runs the loop so that abort() can end it, also when that was called already.
void HttpConnectionQt::_run(QEventLoop& loop)
{
    {
        const QMutexLocker lock(&m_mutex);
        if (m_aborted)
            return;
        m_loop = &loop;
    }
    loop.exec();
    const QMutexLocker lock(&m_mutex);
    m_loop = nullptr;
}

} // namespace net
