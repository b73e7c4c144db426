#include "net/HttpConnectionQt.h"

#include "app/base/LogHelper.h"
#include "net/PinnedCertificate.h"
#include "net/ReceiveLimit.h"
#include "net/Tls.h"

#include <QBuffer>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QMutexLocker>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace net {

namespace {
constexpr int maxRedirects = 10;
constexpr int chunkSize = 2048;
/// What a connection may receive in bytes: the largest answer, and its headers and framing.
constexpr qint64 maxReceived = HttpConnectionQt::maxAnswer / 8 * 9;
constexpr auto watchInterval = 25ms;
/// The time for a whole exchange, in times of the silence that is allowed.
constexpr int maxSilences = 4;

bool isSecure(const QUrl& url)
{
    return url.scheme() == "https"_L1;
}

constexpr auto tooLarge = "The answer is too large"_L1;
constexpr auto canceled = "Operation canceled"_L1;

/// Moves what has arrived to `buffer`. Returns false when it is larger than an answer may be.
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
    QDeadlineTimer deadline;

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
    return _request({url, nullptr, QDeadlineTimer(maxSilences * m_timeout)}, response);
}

bool HttpConnectionQt::post(const QUrl& url, const QByteArray& body, QByteArray& response,
                            const HttpHeaders& /*headers*/)
{
    return _request({url, &body, QDeadlineTimer(maxSilences * m_timeout)}, response);
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
    // Queued: quitting a loop directly before it starts has no effect.
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
    MVR_LOG_ERR(u"some error happened "_s + error);
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
        if (_isAborted())
            return canceled;
        reply = _issue(exchange, target);
        if (!reply)
            return u"No request could be made"_s;
        // The request after the last redirect is sent, but its answer is not waited for.
        if (redirects == maxRedirects)
            return {};
        const QString error = _await(exchange, *reply);
        const QVariant redirect = reply->attribute(QNetworkRequest::RedirectionTargetAttribute);
        if (!error.isEmpty() || !redirect.isValid())
            return error;
        std::exchange(reply, nullptr)->deleteLater();
        target = exchange.url.resolved(redirect.toUrl());
    }
}

bool HttpConnectionQt::_isAborted() const
{
    const QMutexLocker lock(&m_mutex);
    return m_aborted;
}

QNetworkAccessManager& HttpConnectionQt::_manager()
{
    if (!m_manager) {
        ensureTls();
        m_limit = std::make_unique<ReceiveLimit>(maxReceived);
        m_manager = std::make_unique<QNetworkAccessManager>();
    }
    return *m_manager;
}

QNetworkReply* HttpConnectionQt::_issue(const Exchange& exchange, const QUrl& url)
{
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", m_referer.toLatin1());
    // Compressed answers could grow to any size in memory while they are unpacked.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    // HTTP/2 gains nothing for a single short answer.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setTransferTimeout(static_cast<int>(m_timeout.count()));
    QNetworkReply* const reply =
        exchange.body ? _manager().post(request, *exchange.body) : _manager().get(request);
    if (reply && isSecure(url))
        excusePinnedCertificate(*reply);
    return reply;
}

/// Blocks until the reply is finished, too large or too late, or is to be aborted. Returns what
/// went wrong, or an empty text.
QString HttpConnectionQt::_await(const Exchange& exchange, QNetworkReply& reply)
{
    QEventLoop loop;
    QObject::connect(m_manager.get(), &QNetworkAccessManager::finished, &loop, &QEventLoop::quit);
    // Perhaps another request's connection: this one's reply fails if it was its own.
    bool wasCut = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
        wasCut = m_limit->cutExceeding() || wasCut;
        if (reply.bytesAvailable() > maxAnswer || exchange.deadline.hasExpired())
            loop.quit();
    });
    watch.start(watchInterval);
    _run(loop);
    if (reply.bytesAvailable() > maxAnswer)
        return tooLarge;
    if (!reply.isFinished())
        reply.abort();
    if (reply.error() == QNetworkReply::NoError)
        return {};
    return wasCut ? QString(tooLarge) : reply.errorString();
}

/// Runs the loop until it quits or abort() is called; not at all if that was called before.
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
