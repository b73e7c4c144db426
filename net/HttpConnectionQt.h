// The HTTP client on the toolkit's network stack.
#pragma once

#include "net/HttpConnection.h"

#include <QMutex>

#include <chrono>
#include <memory>

class QEventLoop;
class QNetworkAccessManager;
class QNetworkReply;

namespace net {

class ReceiveLimit;

/// Follows up to ten redirects with the same method and body. Servers on https are verified
/// against the system's authorities; where the program was built with the certificate of its own
/// servers, a self-signed one is accepted if it is exactly that.
/// Fetches nothing but http and https, and an exchange that began on https never leaves it. Servers
/// that send more than the largest answer, in whatever form, are cut off. The system's proxies are
/// used; finding them may block, and abort() does not end that.
class HttpConnectionQt final : public HttpConnection
{
public:
    /// An answer of more bytes is an error.
    static constexpr qint64 maxAnswer = 8 * 1024 * 1024;

    HttpConnectionQt();
    ~HttpConnectionQt() override;
    Q_DISABLE_COPY_MOVE(HttpConnectionQt)

    // For transports that stream; these two do nothing and return true.
    bool open(const QString& host, unsigned short port) override;
    bool close() override;

    /// `headers` are not sent.
    [[nodiscard]] bool get(const QUrl& url, QByteArray& response,
                           const HttpHeaders& headers) override;
    /// `headers` are not sent.
    [[nodiscard]] bool post(const QUrl& url, const QByteArray& body, QByteArray& response,
                            const HttpHeaders& headers) override;

    [[nodiscard]] int statusCode() const override;
    [[nodiscard]] qint64 contentLength() const override;
    [[nodiscard]] int read(QIODevice& out, int max) override;

    /// Sent as the user agent.
    [[nodiscard]] QString referer() const override;
    void setReferer(const QString& referer) override;

    void abort() override;

    /// How long a request may go without data; 30 s unless set. All of an exchange may take four
    /// times as long.
    void setTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

private:
    struct Exchange;

    bool _request(const Exchange& exchange, QByteArray& response);
    QString _follow(const Exchange& exchange, QNetworkReply*& reply);
    [[nodiscard]] bool _isAborted() const;
    QNetworkAccessManager& _manager();
    QNetworkReply* _issue(const Exchange& exchange, const QUrl& url);
    QString _await(const Exchange& exchange, QNetworkReply& reply);
    void _run(QEventLoop& loop);

    QString m_referer;
    std::unique_ptr<ReceiveLimit> m_limit; ///< made before the connections, so that all count
    /// Lives in the thread of the first request.
    std::unique_ptr<QNetworkAccessManager> m_manager;
    std::chrono::milliseconds m_timeout{30'000};

    mutable QMutex m_mutex;       ///< guards what abort() touches
    QEventLoop* m_loop = nullptr; ///< while a request waits
    bool m_aborted = false;
};

} // namespace net
