// The blocking HTTP client that worker threads talk to servers with.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <boost/shared_ptr.hpp>

class QIODevice;
class QUrl;

namespace net {

using HttpHeaders = QHash<QString, QString>;

/// One exchange at a time, in the thread of the first one; abort() alone may come from any thread.
/// Requests run an event loop of their own: a caller holds no lock that its thread's events need.
class HttpConnection
{
public:
    HttpConnection() = default;
    virtual ~HttpConnection();
    Q_DISABLE_COPY_MOVE(HttpConnection)

    virtual bool open(const QString& host, unsigned short port) = 0;
    virtual bool close() = 0;

    /// Fetches `url` and puts the whole body into `response`. Returns false, and logs why, when
    /// no answer came or it was not acceptable.
    [[nodiscard]] virtual bool get(const QUrl& url, QByteArray& response,
                                   const HttpHeaders& headers) = 0;
    /// The same, sending `body`.
    [[nodiscard]] virtual bool post(const QUrl& url, const QByteArray& body, QByteArray& response,
                                    const HttpHeaders& headers) = 0;

    /// Of the last answer; -1 where the transport does not tell.
    [[nodiscard]] virtual int statusCode() const = 0;
    /// Bytes of the last answer; -1 where the transport does not tell.
    [[nodiscard]] virtual qint64 contentLength() const = 0;
    /// Moves up to `max` bytes of the answer to `out` and returns their number, or -1 where the
    /// transport cannot stream.
    [[nodiscard]] virtual int read(QIODevice& out, int max) = 0;

    /// The name that the program gives itself to the server; empty unless set.
    [[nodiscard]] virtual QString referer() const = 0;
    virtual void setReferer(const QString& referer) = 0;

    /// Any thread; returns at once. The request under way and every later one return false soon.
    virtual void abort() = 0;

    /// The referer of all the program's requests: its display name and version.
    [[nodiscard]] static QString programReferer();

    /// A new connection of the kind the program uses.
    [[nodiscard]] static boost::shared_ptr<HttpConnection> create();

    using Maker = boost::shared_ptr<HttpConnection> (*)();
    /// For tests: has create() answer what `maker` makes; null brings the usual kind back.
    /// Not while requests are running.
    static void setMaker(Maker maker);

    /// A line "key: value" an entry, in the hash's order.
    [[nodiscard]] static QString headersToString(const HttpHeaders& headers);
};

} // namespace net
