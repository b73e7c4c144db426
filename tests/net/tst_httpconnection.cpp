// The HTTP client against servers that behave and servers that do not.
#include "net/HttpConnectionQt.h"
#include "tests/net/Certificates.h"
#include "tests/support/LogWatch.h"

#include <QRegularExpression>
#include <QSemaphore>
#include <QSslSocket>
#include <QTest>
#include <QTimer>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Request = TestServer::Request;

namespace {
constexpr auto maxAnswer = net::HttpConnectionQt::maxAnswer;

TestServer::Answer always(const QByteArray& answer)
{
    return [answer](const Request&, QSslSocket& socket) { socket.write(answer); };
}

QByteArray redirection(int status, const QByteArray& target)
{
    return TestServer::answer(status, "no", "Location: " + target + "\r\n");
}

/// An answer for a request that should be over by then, but still before its usual time-out.
void answerLate(QSslSocket& socket)
{
    QTimer::singleShot(10s, &socket, [&socket] { socket.write(TestServer::answer(200, "late")); });
}
} // namespace

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
        m_connection = std::make_unique<net::HttpConnectionQt>();
        m_connection->setReferer(u"Tést 1.2.3"_s);
        m_response = "left over";
    }

    void cleanup()
    {
        m_connection.reset();
        m_log.reset();
    }

    void packedAnswersAreNotWantedAndStayPacked()
    {
        const QByteArray packed = qCompress(QByteArray(9'000'000, 'x')).sliced(4);
        const TestServer server(
            always(TestServer::answer(200, packed, "Content-Encoding: deflate\r\n")));
        QVERIFY(_get(server.url(u"/a?b=c"_s)));
        QVERIFY(m_response == packed);

        const Request request = server.requests().value(0);
        QCOMPARE(request.method, "GET");
        QCOMPARE(request.target, "/a?b=c");
        QCOMPARE(request.headers.value("accept-encoding"), "identity");
        QCOMPARE(request.headers.value("user-agent"), "T\xe9st 1.2.3");
        QVERIFY(!request.headers.contains("x-extra"));
    }

    void answers_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("error");
        const auto row = [](const char* name, const QByteArray& answer, const QString& error) {
            QTest::newRow(name) << answer << error;
        };
        const auto sized = [](qsizetype size) {
            return TestServer::answer(200, QByteArray(size, 'b'));
        };
        row("as large as may be", sized(maxAnswer), {});
        row("too large", sized(maxAnswer + 1), u"The answer is too large"_s);
        row("not found", TestServer::answer(404, "no"), u"Error transferring"_s);
        row("cut", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n12345", u"Connection closed"_s);
        row("closed at once", {}, u"Connection closed"_s);
    }

    void answers()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const QString, error);
        const TestServer server([&](const Request&, QSslSocket& socket) {
            socket.write(answer);
            socket.disconnectFromHost();
        });
        QCOMPARE(_get(server.url(u"/"_s)), error.isEmpty());
        const QByteArray body = answer.mid(answer.indexOf("\r\n\r\n") + 4);
        QVERIFY(m_response == (error.isEmpty() ? body : QByteArray()));
        const QString errors = _errors();
        QCOMPARE(errors.isEmpty(), error.isEmpty());
        QVERIFY2(errors.startsWith(error), qPrintable(errors));
    }

    void endlessAnswersEnd()
    {
        const TestServer server([](const Request&, QSslSocket& socket) {
            QObject::connect(&socket, &QIODevice::bytesWritten, &socket, [&socket] {
                if (socket.bytesToWrite() == 0)
                    socket.write(QByteArray(65536, 'x'));
            });
            socket.write("HTTP/1.1 200 OK\r\n\r\n");
        });
        QVERIFY(!_get(server.url(u"/"_s)));
        QVERIFY(m_response.size() <= maxAnswer);
        QCOMPARE(_errors(), u"The answer is too large"_s);
    }

    void errorsAreFitForTheLog()
    {
        const TestServer server(always("HTTP/1.1 404 \033[31m" + QByteArray(10'000, 'x') +
                                       "\r\nContent-Length: 0\r\n\r\n"));
        QVERIFY(!_get(server.url(u"/"_s)));
        const QString error = _errors();
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
        row("another one, pinned second", other, own.certificate + other.certificate, false);
        row("pinned but expired", expired, expired.certificate, false);
        row("pinned but for another host", wrongHost, wrongHost.certificate, false);
        row("nothing pinned", own, {}, false);
    }

    void certificates()
    {
        QFETCH(const TestServer::Identity, identity);
        QFETCH(const QByteArray, pinned);
        QFETCH(const bool, accepted);
        const TestServer server(always(TestServer::answer(200, "yes")), identity);
        const PinnedCertificate pin(pinned);

        QCOMPARE(_get(server.url(u"/"_s)), accepted);
        QCOMPARE(m_response, accepted ? "yes" : "");
        QCOMPARE(server.requests().isEmpty(), !accepted);
        const QString errors = _errors();
        QCOMPARE(errors.isEmpty(), accepted);
        QVERIFY2(accepted || errors.startsWith("SSL handshake failed"_L1), qPrintable(errors));
    }

    void redirectsRepeatTheRequest()
    {
        // The toolkit names a content type of its own and says so.
        for (int i = 0; i < 3; ++i)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"content-type missing"_s));
        // On https: what is excused is excused anew at each step.
        const TestServer::Identity identity = makeIdentity(u"IP:127.0.0.1"_s);
        const PinnedCertificate pin(identity.certificate);
        const TestServer server(
            [](const Request& request, QSslSocket& socket) {
                // Addresses that are relative are so to the first one.
                const QByteArray next = request.target == "/first/a" ? "/second/b" : "c?x=1";
                socket.write(request.target == "/first/c?x=1" ? TestServer::answer(200, "yes")
                                                              : redirection(303, next));
            },
            identity);
        QVERIFY(m_connection->post(server.url(u"/first/a"_s), "the body", m_response, {}));
        QCOMPARE(m_response, "yes");
        QCOMPARE(server.requests().size(), 3);
        QCOMPARE(server.requests().last().method, "POST");
        QCOMPARE(server.requests().last().body, "the body");
    }

    void redirectsEnd()
    {
        const TestServer server(always(redirection(302, "/again")));
        QVERIFY(_get(server.url(u"/"_s)));
        QCOMPARE(m_response, "");
        QVERIFY(server.requests().size() == 10 || server.requests().size() == 11);
    }

    void httpsIsNotLeftForHttp()
    {
        const TestServer plain(always(TestServer::answer(200, "yes")));
        const TestServer::Identity identity = makeIdentity(u"IP:127.0.0.1"_s);
        const PinnedCertificate pin(identity.certificate);
        const TestServer server(always(redirection(302, plain.url(u"/"_s).toEncoded())), identity);
        QVERIFY(!_get(server.url(u"/"_s)));
        QCOMPARE(m_response, "");
        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(plain.requests().size(), 0);
        QCOMPARE(m_log->take().size(), 1);
    }

    void filesAreNotFetched()
    {
        const TestServer server(always(redirection(302, "file:///etc/passwd")));
        QVERIFY(!_get(server.url(u"/"_s)));
        QCOMPARE(m_response, "");
        QCOMPARE(m_log->take().size(), 1);
    }

    void silenceTimesOut()
    {
        m_connection->setTimeout(300ms);
        const TestServer server([](const Request&, QSslSocket& socket) { answerLate(socket); });
        QVERIFY(!_get(server.url(u"/"_s)));
        QCOMPARE(_errors(), u"Operation canceled"_s);
    }

    void abortEndsTheRequest()
    {
        const TestServer server([this](const Request&, QSslSocket& socket) {
            std::thread(&net::HttpConnectionQt::abort, m_connection.get()).join();
            answerLate(socket);
        });
        QVERIFY(!_get(server.url(u"/"_s)));
        QVERIFY(!_get(server.url(u"/"_s)));
        QCOMPARE(_errors(), u"Operation canceled/Operation canceled"_s);
        QCOMPARE(server.requests().size(), 1);
    }

    void abortEndsTheSearchForAProxy()
    {
        QSemaphore listening;
        QSemaphore end;
        quint16 port = 0;
        bool asked = false;
        std::thread script([&] {
            QTcpServer server;
            server.listen(QHostAddress::LocalHost);
            port = server.serverPort();
            listening.release();
            asked = server.waitForNewConnection(20'000);
            m_connection->abort();
            end.tryAcquire(1, 10'000);
        });
        listening.acquire();
        qputenv("http_proxy", "pac+http://127.0.0.1:" + QByteArray::number(port) + '/');
        const bool got = _get(QUrl(u"http://nowhere.invalid/"_s));
        end.release();
        script.join();
        qunsetenv("http_proxy");
        QVERIFY(!got);
        const QString errors = _errors();
        if (!asked)
            QSKIP("this system asks no scripts for proxies");
        // Had the search gone on without the script, the host would not have been found.
        QCOMPARE(errors, u"Operation canceled"_s);
    }

private:
    bool _get(const QUrl& url)
    {
        return m_connection->get(url, m_response, {{u"X-Extra"_s, u"1"_s}});
    }

    /// The errors logged since the last call.
    QString _errors()
    {
        return m_log->take().join(u'/').remove(u"Critical some error happened "_s);
    }

    std::unique_ptr<LogWatch> m_log;
    std::unique_ptr<net::HttpConnectionQt> m_connection;
    QByteArray m_response;
};

QTEST_GUILESS_MAIN(tst_HttpConnection)
#include "tst_httpconnection.moc"
