// A web server on the local host that does what a test tells it.
#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <functional>
#include <memory>

class QSslSocket;

/// Runs in a thread of its own, so that the test may block.
class TestServer
{
public:
    struct Request
    {
        QByteArray method, target, body;
        QList<QByteArray> headers; ///< whole lines, as sent

        /// The value of a header; null without one. The name's case does not matter.
        [[nodiscard]] QByteArray header(const QByteArray& name) const;
    };

    /// Told of each complete request, in the server's thread; answers by writing to the socket.
    using Answer = std::function<void(const Request&, QSslSocket&)>;

    /// PEM texts; without them the server speaks plain HTTP.
    struct Identity
    {
        QByteArray certificate, key;

        /// Has the socket go on with TLS, as the server's side.
        void encrypt(QSslSocket& socket) const;
    };

    explicit TestServer(Answer answer, const Identity& identity = {});
    ~TestServer();
    Q_DISABLE_COPY_MOVE(TestServer)

    [[nodiscard]] quint16 port() const;
    /// The address of `path` on this server, by its number: not every system can look up names.
    [[nodiscard]] QUrl url(const QString& path) const;

    /// The requests so far.
    [[nodiscard]] QList<Request> requests() const;
    /// Blocks until there are `count` requests; false if they do not come in 20 s.
    [[nodiscard]] bool waitForRequests(int count) const;

    /// A whole answer with its length, after which the connection is closed.
    [[nodiscard]] static QByteArray answer(int status, const QByteArray& body,
                                           const QByteArray& headers = {});

private:
    class Listener;
    class Runner;
    std::unique_ptr<Runner> m_runner;
};

/// JSON that is readable in source code: written with the other kind of quotes.
[[nodiscard]] QByteArray json(QByteArray text);
