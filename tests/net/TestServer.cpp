#include "tests/net/TestServer.h"

#include "net/Tls.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QThread>
#include <QWaitCondition>

using namespace Qt::StringLiterals;

namespace {
QByteArray headerIn(const QList<QByteArray>& lines, const QByteArray& name)
{
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (line.first(colon).compare(name, Qt::CaseInsensitive) == 0)
            return line.sliced(colon + 1).trimmed();
    }
    return {};
}
} // namespace

/// What the listening thread and the test share.
class TestServer::Runner final : public QThread
{
public:
    Runner(Answer given, Identity shown)
        : answer(std::move(given))
        , identity(std::move(shown))
    {
        net::ensureTls();
        start();
        const QMutexLocker lock(&mutex);
        while (port == 0)
            changed.wait(&mutex);
    }
    ~Runner() override
    {
        quit();
        wait();
    }
    Q_DISABLE_COPY_MOVE(Runner)

    void run() override;

    Answer answer;
    Identity identity;

    QMutex mutex;
    QWaitCondition changed;
    quint16 port = 0;
    QList<Request> requests;
};

class TestServer::Listener final : public QTcpServer
{
public:
    explicit Listener(Runner& runner)
        : m_runner(runner)
    {
    }

protected:
    void incomingConnection(qintptr handle) override
    {
        auto* const socket = new QSslSocket(this);
        socket->setSocketDescriptor(handle);
        connect(socket, &QIODevice::readyRead, socket,
                [this, socket, got = QByteArray()]() mutable { _read(*socket, got); });
        connect(socket, &QAbstractSocket::disconnected, socket, &QObject::deleteLater);
        if (!m_runner.identity.certificate.isEmpty())
            m_runner.identity.encrypt(*socket);
    }

private:
    void _read(QSslSocket& socket, QByteArray& got)
    {
        got += socket.readAll();
        const qsizetype head = got.indexOf("\r\n\r\n");
        if (head < 0)
            return;
        Request request;
        request.headers = got.first(head).replace('\r', "").split('\n');
        const QList<QByteArray> first = request.headers.takeFirst().split(' ');
        request.method = first.value(0);
        request.target = first.value(1);
        request.body = got.sliced(head + 4);
        if (request.body.size() < headerIn(request.headers, "content-length").toLongLong())
            return;
        got.clear();
        {
            const QMutexLocker lock(&m_runner.mutex);
            m_runner.requests.append(request);
            m_runner.changed.wakeAll();
        }
        m_runner.answer(request, socket);
    }

    Runner& m_runner;
};

void TestServer::Runner::run()
{
    Listener listener(*this);
    if (!listener.listen(QHostAddress::LocalHost))
        qFatal("the test server cannot listen");
    {
        const QMutexLocker lock(&mutex);
        port = listener.serverPort();
        changed.wakeAll();
    }
    exec();
}

QByteArray TestServer::Request::header(const QByteArray& name) const
{
    return headerIn(headers, name);
}

void TestServer::Identity::encrypt(QSslSocket& socket) const
{
    socket.setLocalCertificate(QSslCertificate(certificate));
    socket.setPrivateKey(QSslKey(key, QSsl::Ec));
    socket.startServerEncryption();
}

TestServer::TestServer(Answer answer, const Identity& identity)
    : m_runner(std::make_unique<Runner>(std::move(answer), identity))
{
}

TestServer::~TestServer() = default;

quint16 TestServer::port() const
{
    return m_runner->port;
}

QUrl TestServer::url(const QString& path) const
{
    QUrl url(path);
    url.setScheme(m_runner->identity.certificate.isEmpty() ? u"http"_s : u"https"_s);
    url.setHost(u"127.0.0.1"_s);
    url.setPort(m_runner->port);
    return url;
}

QList<TestServer::Request> TestServer::requests() const
{
    const QMutexLocker lock(&m_runner->mutex);
    return m_runner->requests;
}

bool TestServer::waitForRequests(int count) const
{
    const QDeadlineTimer deadline(20'000);
    const QMutexLocker lock(&m_runner->mutex);
    while (m_runner->requests.size() < count) {
        if (!m_runner->changed.wait(&m_runner->mutex, deadline))
            return false;
    }
    return true;
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
