#include "tests/net/TestServer.h"

#include "net/Tls.h"

#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>

using namespace Qt::StringLiterals;

void TestServer::Identity::encrypt(QSslSocket& socket) const
{
    socket.setLocalCertificate(QSslCertificate(certificate));
    socket.setPrivateKey(QSslKey(key, QSsl::Ec));
    socket.startServerEncryption();
}

TestServer::TestServer(Answer answer, Identity identity)
    : m_answer(std::move(answer))
    , m_identity(std::move(identity))
{
    net::ensureTls();
    if (!listen(QHostAddress::LocalHost))
        qFatal("the test server cannot listen");
}

void TestServer::incomingConnection(qintptr handle)
{
    auto* const socket = new QSslSocket(this);
    socket->setSocketDescriptor(handle);
    connect(socket, &QIODevice::readyRead, socket,
            [this, socket, got = QByteArray()]() mutable { _read(*socket, got); });
    connect(socket, &QAbstractSocket::disconnected, socket, &QObject::deleteLater);
    if (!m_identity.certificate.isEmpty())
        m_identity.encrypt(*socket);
}

void TestServer::_read(QSslSocket& socket, QByteArray& got)
{
    got += socket.readAll();
    const qsizetype head = got.indexOf("\r\n\r\n");
    if (head < 0)
        return;
    QList<QByteArray> lines = got.first(head).split('\n');
    const QList<QByteArray> first = lines.takeFirst().split(' ');
    Request request{first.value(0), first.value(1), got.sliced(head + 4), {}};
    for (const QByteArray& line : std::as_const(lines)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    if (request.body.size() < request.headers.value("content-length").toLongLong())
        return;
    got.clear();
    m_requests.append(request);
    m_answer(request, socket);
}

QUrl TestServer::url(const QString& path) const
{
    QUrl url(path);
    url.setScheme(m_identity.certificate.isEmpty() ? u"http"_s : u"https"_s);
    url.setHost(u"127.0.0.1"_s);
    url.setPort(serverPort());
    return url;
}

QByteArray TestServer::answer(int status, const QByteArray& body, const QByteArray& headers)
{
    return "HTTP/1.1 " + QByteArray::number(status) + " Status\r\nConnection: close\r\n" +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body;
}

QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}
