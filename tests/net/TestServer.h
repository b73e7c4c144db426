// A web server on the local host that does what a test tells it.
#pragma once

#include <QHash>
#include <QTcpServer>
#include <QUrl>

#include <functional>

class QSslSocket;

/// Lives in the test's thread: it answers while that runs an event loop.
class TestServer final : public QTcpServer
{
public:
    struct Request
    {
        QByteArray method, target, body;
        QHash<QByteArray, QByteArray> headers; ///< by their names in lower case
    };

    /// Told of each complete request; answers by writing to the socket.
    using Answer = std::function<void(const Request&, QSslSocket&)>;

    /// PEM texts; without them the server speaks plain HTTP.
    struct Identity
    {
        QByteArray certificate, key;

        /// Has the socket go on with TLS, as the server's side.
        void encrypt(QSslSocket& socket) const;
    };

    explicit TestServer(Answer answer, Identity identity = {});

    /// The address of `path` on this server, by its number: not every system can look up names.
    [[nodiscard]] QUrl url(const QString& path) const;
    /// The requests so far.
    [[nodiscard]] const QList<Request>& requests() const { return m_requests; }

    /// A whole answer with its length, after which the connection is closed.
    [[nodiscard]] static QByteArray answer(int status, const QByteArray& body,
                                           const QByteArray& headers = {});

protected:
    void incomingConnection(qintptr handle) override;

private:
    void _read(QSslSocket& socket, QByteArray& got);

    Answer m_answer;
    Identity m_identity;
    QList<Request> m_requests;
};

/// JSON that is readable in source code: written with the other kind of quotes.
[[nodiscard]] QByteArray json(QByteArray text);
