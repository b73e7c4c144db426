// The HTTP client and the update check against servers that behave and servers that do not.
#include "app/base/UserMetrics.h"
#include "app/base/dynamic_singleton.h"
#include "net/HttpConnectionQt.h"
#include "net/NetServices.h"
#include "tests/net/UpdateService.h"
#include "tests/support/LogWatch.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr int timeoutMs = 20'000;
constexpr auto maxAnswer = net::HttpConnectionQt::maxAnswer;

TestServer::Answer always(const QByteArray& answer)
{
    return [answer](const QByteArray&, QSslSocket& socket) { socket.write(answer); };
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
        m_log.emplace();
        m_connection.emplace();
        m_response = "left over";
        dynamic_singleton<UserMetrics>::inst();
    }

    void cleanup()
    {
        m_connection.reset();
        NetServices::destroyShared();
        dynamic_singleton<UserMetrics>::destroy();
        m_log.reset();
    }

    void answers()
    {
        const auto sized = [](qsizetype size) {
            return TestServer::answer(200, QByteArray(size, 'b'));
        };
        const QList<std::pair<QByteArray, QString>> answers{
            {sized(maxAnswer), {}},
            // Packed ones stay packed.
            {TestServer::answer(200, "x", "Content-Encoding: deflate\r\n"), {}},
            {sized(maxAnswer + 1), u"The answer is too large"_s},
            {TestServer::answer(404, "no"), u"Error transferring"_s},
        };
        for (const auto& [answer, error] : answers) {
            const TestServer server([&](const QByteArray&, QSslSocket& socket) {
                socket.write(answer);
                socket.disconnectFromHost();
            });
            const QString got = _get(server.url(u"/"_s));
            QVERIFY2(got.startsWith(error) && got.isEmpty() == error.isEmpty(), qPrintable(got));
            const QByteArray body = answer.mid(answer.indexOf("\r\n\r\n") + 4);
            QVERIFY(m_response == (error.isEmpty() ? body : ""));
            QVERIFY(server.requests().value(0).contains("\r\nAccept-Encoding: identity\r\n"));
        }
    }

    void endlessAnswersEnd()
    {
        const TestServer server([](const QByteArray& request, QSslSocket& socket) {
            QObject::connect(&socket, &QIODevice::bytesWritten, &socket, [&socket] {
                if (socket.bytesToWrite() == 0)
                    socket.write(QByteArray(65536, 'x'));
            });
            socket.write(request.startsWith("GET /header")
                             ? "HTTP/1.1 200 OK\r\nA: "
                             : "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"x\"\r\n\r\n");
        });
        for (const QString& path : {u"/header"_s, u"/password"_s}) {
            QCOMPARE(_get(server.url(path)), u"The answer is too large"_s);
            QTRY_VERIFY2(!server.findChild<QSslSocket*>(), "it is still being listened to");
        }
    }

    void certificates()
    {
        const QByteArray own = makeIdentity(u"IP:127.0.0.1"_s);
        const QByteArray other = makeIdentity(u"IP:127.0.0.1"_s);
        const QByteArray wrongHost = makeIdentity(u"DNS:elsewhere.example"_s);
        for (const auto& [identity, pinned] : {std::pair(own, own),
                                               {other, own + other},
                                               {wrongHost, wrongHost},
                                               {own, QByteArray()}}) {
            const TestServer server(always(TestServer::answer(200, "yes")), identity);
            const PinnedCertificate pin(pinned);
            const QString error = _get(server.url(u"/"_s));
            const bool isRight = identity == own && pinned == own;
            QCOMPARE(m_response, isRight ? "yes" : "");
            QCOMPARE(server.requests().size(), isRight ? 1 : 0);
            QVERIFY2(isRight || error.startsWith("SSL handshake failed"_L1), qPrintable(error));
        }
    }

    void redirects()
    {
        // On https: what is excused is excused anew at each step.
        const QByteArray identity = makeIdentity(u"IP:127.0.0.1"_s);
        const PinnedCertificate pin(identity);
        const TestServer plain(always(TestServer::answer(200, "no")));
        const QHash<QByteArray, QByteArray> targets{
            {"/first/a", "/second/b"},
            {"/second/b", "c?x=1"}, // relative to the first address
            {"/plain", plain.url(u"/"_s).toEncoded()},
            {"/file", "file:///etc/passwd"},
        };
        const TestServer server(
            [&](const QByteArray& request, QSslSocket& socket) {
                const QByteArray target = targets.value(request.split(' ').at(1));
                socket.write(target.isEmpty()
                                 ? TestServer::answer(200, "yes")
                                 : TestServer::answer(303, {}, "Location: " + target + "\r\n"));
            },
            identity);
        const auto post = [&](const QString& path) {
            return m_connection->post(server.url(path), "the body", m_response, {});
        };
        QVERIFY(post(u"/first/a"_s));
        QCOMPARE(m_response, "yes");
        QCOMPARE(server.requests().size(), 3);
        for (const QString& path : {u"/plain"_s, u"/file"_s}) {
            QVERIFY(!post(path));
            QCOMPARE(m_response, "");
            QVERIFY(_error().startsWith("The address is not allowed"_L1));
        }
        QCOMPARE(plain.requests().size(), 0);
        QCOMPARE(server.requests().size(), 5);
        for (const QByteArray& request : server.requests())
            QVERIFY(request.startsWith("POST ") && request.endsWith("\r\n\r\nthe body"));
    }

    void drippingServerTimesOut()
    {
        m_connection->setTimeout(300ms);
        QTimer timer;
        const TestServer dripping([&timer](const QByteArray&, QSslSocket& socket) {
            socket.write("HTTP/1.1 200 OK\r\n\r\n");
            timer.callOnTimeout(&socket, [&socket] { socket.write("x"); });
            timer.start(10ms);
        });
        QCOMPARE(_get(dripping.url(u"/"_s)), u"Operation canceled"_s);
    }

    void abortEndsTheRequest()
    {
        const TestServer server([this](const QByteArray&, QSslSocket&) {
            std::thread(&net::HttpConnectionQt::abort, &*m_connection).join();
        });
        QCOMPARE(_get(server.url(u"/"_s)), u"Operation canceled"_s);
        QCOMPARE(_get(server.url(u"/"_s)), u"Operation canceled"_s);
        QCOMPARE(server.requests().size(), 1);
    }

    void updateAnswers()
    {
        for (const QByteArray& nothing :
             {"{'updates': {'id': 'a', 'version': '1', 'url': 'http://a'}}"_ba,
              "{'updates': [1, null, {'id': '', 'version': '1', 'url': 'http://a'}]}"_ba}) {
            QByteArray text = json(nothing);
            QVERIFY2(!UpdateInformation(&text).valid(), text.constData());
        }
        // Good among bad, numbers as texts, the last of one id.
        QByteArray text = json(
            "{'updates': [{'id': 'a', 'version': 7, 'url': 'http://a'}, {'id': 'b'}, {'id': 'a', "
            "'version': 8.5, 'url': 'http://b'}, {'id': 'a', 'version': '1.x', 'url': 'http://c'}, "
            "{'id': 'a', 'version': '9', 'url': 'http://a:b:c'}]}");
        const UpdateInformation information(&text);
        QVERIFY(information.valid());
        QCOMPARE(information.products().keys(), {u"a"_s});
        const UpdateInformation::ProductInfo product = information.products().value(u"a"_s);
        QCOMPARE(product.version().toString(), u"8.5.0"_s);
        QCOMPARE(product.url(), QUrl(u"http://b"_s));
    }

    void updateCheck()
    {
        UpdateService service;
        service.answer = TestServer::answer(
            200, json("{'updates': [{'id': 'a.product', 'version': '1', 'url': 'http://a'}]}"));
        const QString id = UserMetrics::installationId();
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"metrics.xml"_s);
        dynamic_singleton<UserMetrics>::inst().save(path);
        // In the program's next life.
        dynamic_singleton<UserMetrics>::destroy();
        QVERIFY(dynamic_singleton<UserMetrics>::inst().load(path));
        QSignalSpy checked(NetServices::shared().get(), &NetServices::updatesChecked);
        NetServices::shared()->checkForUpdates();
        QVERIFY(checked.wait(timeoutMs));
        const auto told = checked.at(0).at(0).value<UpdateInformation>();
        QCOMPARE(told.products().keys(), {u"a.product"_s});
        const QString request = QString::fromLatin1(service.server.requests().last());
        QVERIFY2(request.startsWith(u"GET /updates?id=%1&p=%2&v=0.2.608 HTTP/1.1\r\n"_s.arg(
                     id, ProductHelper::productId())),
                 qPrintable(request));
        QVERIFY(request.contains(u"\r\nHost: "_s + ProductHelper::serviceHost() + u"\r\n"));
        QVERIFY(request.contains("\r\nUser-Agent: Mivora 0.2.608\r\n"_L1));
    }

private:
    /// Returns the error logged; empty after a success.
    QString _get(const QUrl& url)
    {
        const bool succeeded = m_connection->get(url, m_response, {});
        const QString error = _error();
        return succeeded == error.isEmpty() ? error : u"the result is not what was logged"_s;
    }

    /// What was logged since the last call.
    QString _error() { return m_log->take().join(u'/').remove(u"Critical some error happened "_s); }

    std::optional<LogWatch> m_log;
    std::optional<net::HttpConnectionQt> m_connection;
    QByteArray m_response;
};

QTEST_GUILESS_MAIN(tst_HttpConnection)
#include "tst_httpconnection.moc"
