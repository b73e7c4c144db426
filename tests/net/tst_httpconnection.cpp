// The HTTP client against servers that behave and servers that do not.
#include "net/HttpConnectionQt.h"
#include "tests/net/Certificates.h"
#include "tests/support/LogWatch.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QSslSocket>
#include <QTest>
#include <QTimer>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Request = TestServer::Request;

class tst_HttpConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // As the program does it.
        QCoreApplication::setLibraryPaths({});
    }

    void init()
    {
        m_log = std::make_unique<LogWatch>();
        m_connection = new net::HttpConnectionQt;
        m_connection->setReferer(u"Tést 1.2.3"_s);
        m_response = "left over";
    }

    void cleanup()
    {
        delete m_connection;
        m_log.reset();
    }

    void constants()
    {
        QBuffer out;
        QVERIFY(m_connection->open(u"host"_s, 1));
        QVERIFY(m_connection->close());
        QCOMPARE(m_connection->statusCode(), -1);
        QCOMPARE(m_connection->contentLength(), -1);
        QCOMPARE(m_connection->read(out, 1), -1);
        QCOMPARE(m_connection->referer(), u"Tést 1.2.3"_s);
        QVERIFY(dynamic_cast<net::HttpConnectionQt*>(net::HttpConnection::create().get()));
    }

    void headersAsText()
    {
        const net::HttpHeaders headers{{u"A"_s, u"1"_s}, {u"B"_s, u"2 3"_s}};
        const QString text = net::HttpConnection::headersToString(headers);
        QVERIFY(text == "A: 1\nB: 2 3\n"_L1 || text == "B: 2 3\nA: 1\n"_L1);
        QCOMPARE(net::HttpConnection::headersToString({}), QString());
    }

    void plainAnswers_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("empty") << 200 << 0 << true;
        QTest::newRow("short") << 200 << 17 << true;
        QTest::newRow("whole chunks") << 200 << 4096 << true;
        QTest::newRow("not quite success") << 203 << 10 << true;
        QTest::newRow("as large as may be") << 200 << 8 * 1024 * 1024 << true;
        QTest::newRow("too large") << 200 << 8 * 1024 * 1024 + 1 << false;
        QTest::newRow("not found") << 404 << 10 << false;
        QTest::newRow("server error") << 500 << 10 << false;
    }

    void plainAnswers()
    {
        QFETCH(const int, status);
        QFETCH(const int, size);
        QFETCH(const bool, accepted);
        const QByteArray body(size, 'b');
        const TestServer server([&](const Request&, QSslSocket& socket) {
            socket.write(TestServer::answer(status, body));
        });

        QCOMPARE(_get(server.url(u"/a?b=c"_s)), accepted);
        QVERIFY(m_response == (accepted ? body : QByteArray()));
        QCOMPARE(_errors().size(), accepted ? 0 : 1);

        const Request request = server.requests().value(0);
        QCOMPARE(request.method, "GET");
        QCOMPARE(request.target, "/a?b=c");
        QCOMPARE(request.header("User-Agent"), "T\xe9st 1.2.3");
        QVERIFY(request.header("X-Extra").isNull());
    }

    void packedAnswersStayPacked()
    {
        const QByteArray packed = qCompress(QByteArray(9'000'000, 'x')).sliced(4);
        const TestServer server([&](const Request&, QSslSocket& socket) {
            socket.write(TestServer::answer(200, packed, "Content-Encoding: deflate\r\n"));
        });
        QVERIFY(_get(server.url(u"/"_s)));
        QVERIFY(m_response == packed);
        QCOMPARE(server.requests().first().header("Accept-Encoding"), "identity");
    }

    void errorsAreFitForTheLog()
    {
        const TestServer server([&](const Request&, QSslSocket& socket) {
            socket.write("HTTP/1.1 404 \033[31m" + QByteArray(10'000, 'x') +
                         "\r\nContent-Length: 0\r\n\r\n");
        });
        QVERIFY(!_get(server.url(u"/"_s)));
        const QString error = _errors().value(0);
        QVERIFY2(error.contains(" [31mxxx"_L1), qPrintable(error));
        QCOMPARE(error.size(), 500);
    }

    void certificates_data()
    {
        const TestServer::Identity own = makeIdentity(u"IP:127.0.0.1"_s);
        const TestServer::Identity other = makeIdentity(u"IP:127.0.0.1"_s);
        const TestServer::Identity expired = makeIdentity(u"IP:127.0.0.1"_s, -1);
        const TestServer::Identity wrongHost = makeIdentity(u"DNS:elsewhere.example"_s);
        QTest::addColumn<TestServer::Identity>("identity");
        QTest::addColumn<QByteArray>("pinned");
        QTest::addColumn<bool>("accepted");
        const auto row = [](const char* name, const TestServer::Identity& identity,
                            const QByteArray& pinned, bool accepted) {
            QTest::newRow(name) << identity << pinned << accepted;
        };
        row("pinned", own, own.certificate, true);
        row("another self-signed one", other, own.certificate, false);
        row("pinned second", other, own.certificate + other.certificate, false);
        row("pinned but expired", expired, expired.certificate, false);
        row("pinned but for another host", wrongHost, wrongHost.certificate, false);
        row("nothing pinned", own, {}, false);
    }

    void certificates()
    {
        QFETCH(const TestServer::Identity, identity);
        QFETCH(const QByteArray, pinned);
        QFETCH(const bool, accepted);
        const TestServer server(
            [](const Request&, QSslSocket& socket) {
                socket.write(TestServer::answer(200, "yes"));
            },
            identity);
        const PinnedCertificate pin(pinned);

        QCOMPARE(_get(server.url(u"/"_s)), accepted);
        QCOMPARE(m_response, accepted ? "yes" : "");
        const QString errors = _errors().join(u'/');
        QCOMPARE(errors.isEmpty(), accepted);
        QVERIFY2(accepted || errors.startsWith("SSL handshake failed"_L1), qPrintable(errors));
        QCOMPARE(server.requests().isEmpty(), !accepted);
    }

    void redirectsRepeatTheRequest_data()
    {
        QTest::addColumn<int>("status");
        for (const int status : {301, 302, 303, 307, 308})
            QTest::addRow("%d", status) << status;
    }

    void redirectsRepeatTheRequest()
    {
        QFETCH(const int, status);
        // The toolkit names a content type of its own and says so.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"content-type missing"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"content-type missing"_s));
        const TestServer server([status](const Request& request, QSslSocket& socket) {
            socket.write(request.target == "/old"
                             ? TestServer::answer(status, "no", "Location: /new?x=1\r\n")
                             : TestServer::answer(200, "yes"));
        });
        QVERIFY(m_connection->post(server.url(u"/old"_s), "the body", m_response, {}));
        QCOMPARE(m_response, "yes");
        QCOMPARE(server.requests().size(), 2);
        const Request request = server.requests().last();
        QCOMPARE(request.method, "POST");
        QCOMPARE(request.target, "/new?x=1");
        QCOMPARE(request.body, "the body");
    }

    void redirectsAreResolvedAgainstTheFirstAddress()
    {
        // On https: what is excused is excused anew at each step.
        const TestServer::Identity identity = makeIdentity(u"IP:127.0.0.1"_s);
        const PinnedCertificate pin(identity.certificate);
        const TestServer server(
            [](const Request& request, QSslSocket& socket) {
                const QByteArray next = request.target == "/first/a" ? "/second/b" : "c";
                socket.write(request.target == "/first/c"
                                 ? TestServer::answer(200, "yes")
                                 : TestServer::answer(302, {}, "Location: " + next + "\r\n"));
            },
            identity);
        QVERIFY(_get(server.url(u"/first/a"_s)));
        QCOMPARE(m_response, "yes");
    }

    void redirectsEnd()
    {
        const TestServer server([](const Request&, QSslSocket& socket) {
            socket.write(TestServer::answer(302, "body", "Location: /again\r\n"));
        });
        QVERIFY(_get(server.url(u"/"_s)));
        QCOMPARE(m_response, "");
        QVERIFY(server.requests().size() == 10 || server.requests().size() == 11);
    }

    void refusedAddresses_data()
    {
        QTest::addColumn<bool>("secure");
        QTest::addColumn<QString>("target");
        QTest::newRow("from https to http") << true << u"http://127.0.0.1/"_s;
        QTest::newRow("a file") << false << u"file:///etc/hostname"_s;
        QTest::newRow("data") << false << u"data:,text"_s;
        QTest::newRow("resources") << false << u"qrc:/network/server.pem"_s;
        QTest::newRow("a port where nobody listens") << false << u"http://127.0.0.1:1/"_s;
        QTest::newRow("no host") << false << u"http://"_s;
    }

    void refusedAddresses()
    {
        QFETCH(const bool, secure);
        QFETCH(const QString, target);
        const TestServer::Identity identity =
            secure ? makeIdentity(u"IP:127.0.0.1"_s) : TestServer::Identity();
        const PinnedCertificate pin(identity.certificate);
        const TestServer server(
            [&](const Request&, QSslSocket& socket) {
                socket.write(
                    TestServer::answer(302, "no", "Location: " + target.toLatin1() + "\r\n"));
            },
            identity);
        QVERIFY(!_get(server.url(u"/"_s)));
        QCOMPARE(m_response, "");
        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(_errors().size(), 1);
    }

    void hostileAnswers_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("repeated");
        QTest::addColumn<QString>("error");
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        const auto row = [](const char* name, const QByteArray& head, const QByteArray& repeated,
                            const QString& error) {
            QTest::newRow(name) << head << repeated << error;
        };
        row("endless", ok + "\r\n", QByteArray(65536, 'x'), u"The answer is too large"_s);
        row("cut", ok + "Content-Length: 100\r\n\r\n12345", {}, u"Connection closed"_s);
        row("no HTTP", "SSH-2.0-server\r\n", {}, u"Connection closed"_s);
        row("closed at once", {}, {}, u"Connection closed"_s);
    }

    void hostileAnswers()
    {
        QFETCH(const QByteArray, head);
        QFETCH(const QByteArray, repeated);
        QFETCH(const QString, error);
        const TestServer server([&](const Request&, QSslSocket& socket) {
            socket.write(head);
            if (repeated.isEmpty())
                socket.disconnectFromHost();
            else
                QObject::connect(&socket, &QIODevice::bytesWritten, &socket, [&socket, &repeated] {
                    if (socket.bytesToWrite() == 0)
                        socket.write(repeated);
                });
        });
        QVERIFY(!_get(server.url(u"/"_s)));
        QVERIFY(m_response.size() <= net::HttpConnectionQt::maxAnswer);
        QCOMPARE(_errors(), {error});
    }

    void silenceTimesOut()
    {
        m_connection->setTimeout(300ms);
        const TestServer server([](const Request&, QSslSocket&) {});
        QVERIFY(!_get(server.url(u"/"_s)));
        QCOMPARE(_errors(), {u"Operation canceled"_s});

        // What comes in pieces is put together.
        m_connection->setTimeout(20s);
        const TestServer slow([](const Request&, QSslSocket& socket) {
            socket.write("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n");
            auto* const timer = new QTimer(&socket);
            QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
            timer->start(50ms);
        });
        QVERIFY(_get(slow.url(u"/"_s)));
        QCOMPARE(m_response, "xxxxx");
    }

    void abortEndsTheRequest()
    {
        const TestServer server([](const Request&, QSslSocket&) {});
        std::thread aborter([&] {
            if (server.waitForRequests(1))
                m_connection->abort();
        });
        QVERIFY(!_get(server.url(u"/"_s)));
        aborter.join();
        QVERIFY(!_get(server.url(u"/"_s)));
        QCOMPARE(_errors(), QStringList(2, u"Operation canceled"_s));
        QCOMPARE(server.requests().size(), 1);
    }

    void abortEndsTheSearchForAProxy()
    {
        const TestServer script([](const Request&, QSslSocket&) {});
        qputenv("http_proxy", "pac+http://127.0.0.1:" + QByteArray::number(script.port()) + '/');
        bool asked = false;
        std::thread aborter([&] {
            asked = script.waitForRequests(1);
            m_connection->abort();
        });
        QVERIFY(!_get(QUrl(u"http://nowhere.invalid/"_s)));
        aborter.join();
        qunsetenv("http_proxy");
        if (!asked)
            QSKIP("this system asks no scripts for proxies");
        QCOMPARE(_errors(), {u"Operation canceled"_s});
    }

private:
    bool _get(const QUrl& url)
    {
        return m_connection->get(url, m_response, {{u"X-Extra"_s, u"1"_s}});
    }

    /// The logged errors since the last call.
    QStringList _errors()
    {
        QStringList lines = m_log->take();
        for (QString& line : lines) {
            if (line.startsWith("Critical some error happened "_L1))
                line.remove(0, 29);
            else
                line = u"unexpected: "_s + line;
        }
        return lines;
    }

    std::unique_ptr<LogWatch> m_log;
    net::HttpConnectionQt* m_connection = nullptr;
    QByteArray m_response;
};

QTEST_GUILESS_MAIN(tst_HttpConnection)
#include "tst_httpconnection.moc"
