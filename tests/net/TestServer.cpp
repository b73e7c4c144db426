#include "tests/net/TestServer.h"

#include "net/Tls.h"

#include <QProcess>
#include <QResource>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {
/// Returns what the script puts out.
QByteArray runScript(const QString& script, const QString& argument, const QByteArray& input = {})
{
    const QTemporaryDir folder;
    QProcess process;
    process.setWorkingDirectory(folder.path());
    process.start(u"sh"_s, {u"-ec"_s, script, u"sh"_s, argument});
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s: %s", qPrintable(script), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}
} // namespace

void encrypt(QSslSocket& socket, const QByteArray& identity)
{
    socket.setLocalCertificate(QSslCertificate(identity));
    socket.setPrivateKey(QSslKey(identity, QSsl::Ec));
    socket.startServerEncryption();
}

TestServer::TestServer(Answer answer, const QByteArray& identity)
    : m_answer(std::move(answer))
    , m_identity(identity)
{
    net::ensureTls();
    if (!listen(QHostAddress::LocalHost))
        qFatal("the test server cannot listen");
}

void TestServer::incomingConnection(qintptr handle)
{
    auto* const socket = new QSslSocket(this);
    socket->setSocketDescriptor(handle);
    connect(socket, &QIODevice::readyRead, this, [this, socket, got = QByteArray()]() mutable {
        got += socket->readAll();
        // Bodies come in one piece.
        const bool lacksBody = got.startsWith("POST") && got.endsWith("\r\n\r\n");
        if (lacksBody || !got.contains("\r\n\r\n"))
            return;
        m_requests.append(std::exchange(got, {}));
        m_answer(m_requests.last(), *socket);
    });
    connect(socket, &QAbstractSocket::disconnected, socket, &QObject::deleteLater);
    if (!m_identity.isEmpty())
        encrypt(*socket, m_identity);
}

QUrl TestServer::url(const QString& path) const
{
    const QString scheme = m_identity.isEmpty() ? u"http"_s : u"https"_s;
    return QUrl(u"%1://127.0.0.1:%2%3"_s.arg(scheme).arg(serverPort()).arg(path));
}

QByteArray TestServer::answer(int status, const QByteArray& body, const QByteArray& headers)
{
    return "HTTP/1.1 " + QByteArray::number(status) + " Status\r\nConnection: close\r\n" +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body;
}

QByteArray makeIdentity(const QString& name)
{
    return runScript(u"openssl ecparam -name prime256v1 -genkey -noout | tee key;"
                     "openssl req -x509 -key key -subj /CN=test -addext subjectAltName=$1"_s,
                     name);
}

PinnedCertificate::PinnedCertificate(const QByteArray& pem)
    : m_resource(runScript(u"cat >server.pem; echo '<RCC><qresource prefix=\"/network\">"
                           "<file>server.pem</file></qresource></RCC>' >list; $1 --binary list"_s,
                           QStringLiteral(MVR_RCC), pem))
{
    if (!QResource::registerResource(reinterpret_cast<const uchar*>(m_resource.constData())))
        qFatal("the pinned certificate cannot be registered");
}

PinnedCertificate::~PinnedCertificate()
{
    QResource::unregisterResource(reinterpret_cast<const uchar*>(m_resource.constData()));
}

QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}
