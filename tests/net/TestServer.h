// A web server on the local host that does what a test tells it, and certificates for it.
#pragma once

#include <QTcpServer>
#include <QUrl>

#include <functional>

class QSslSocket;

/// Lives in the test's thread: it answers while that runs an event loop.
class TestServer final : public QTcpServer
{
public:
    /// Told of each complete request, as it came; answers by writing to the socket.
    using Answer = std::function<void(const QByteArray& request, QSslSocket& socket)>;

    /// Speaks plain HTTP without an identity.
    explicit TestServer(Answer answer, const QByteArray& identity = {});

    /// The address of `path` on this server, by its number: not every system can look up names.
    [[nodiscard]] QUrl url(const QString& path) const;
    /// The requests so far.
    [[nodiscard]] const QByteArrayList& requests() const { return m_requests; }

    /// A whole answer with its length, after which the connection is closed.
    [[nodiscard]] static QByteArray answer(int status, const QByteArray& body,
                                           const QByteArray& headers = {});

protected:
    void incomingConnection(qintptr handle) override;

private:
    Answer m_answer;
    QByteArray m_identity;
    QByteArrayList m_requests;
};

/// A new key and a certificate that it signs itself, in PEM, for a name such as "DNS:a.example" or
/// "IP:127.0.0.1".
[[nodiscard]] QByteArray makeIdentity(const QString& name);
/// Has the socket go on with TLS, as the server's side.
void encrypt(QSslSocket& socket, const QByteArray& identity);

/// While it lives, the program takes the first certificate of this PEM text for that of its own
/// servers.
class PinnedCertificate
{
public:
    explicit PinnedCertificate(const QByteArray& pem);
    ~PinnedCertificate();
    Q_DISABLE_COPY_MOVE(PinnedCertificate)

private:
    QByteArray m_resource;
};

/// JSON that is readable in source code: written with the other kind of quotes.
[[nodiscard]] QByteArray json(QByteArray text);
