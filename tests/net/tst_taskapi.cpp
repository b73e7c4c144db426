// The task server's client against a server that does what it is told.
#include "app/base/Clock.h"
#include "net/taskapi/ITaskApiClientDelegate.h"
#include "net/taskapi/TaskApiClient.h"
#include "net/taskapi/TaskApiRunnable.h"
#include "tests/net/StatusTransport.h"
#include "tests/net/TestServer.h"
#include "tests/support/LogWatch.h"

#include <QRect>
#include <QSemaphore>
#include <QSslSocket>
#include <QTest>
#include <QThreadPool>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using taskapi::ApiErrorCode;
using taskapi::TaskApiClient;
using taskapi::TaskApiRunnable;
using Send = std::function<void(TaskApiClient&)>;
Q_DECLARE_METATYPE(Send)

namespace {
constexpr int timeoutMs = 20000;
// What the server can do instead of answering with a status.
constexpr int closes = -1;
constexpr int hangs = 0;

class Listener final : public taskapi::ITaskApiClientDelegate
{
public:
    void apiTaskCompleted(TaskApiClient* client, TaskApiRunnable* task) override
    {
        _hear(u"completed"_s, client, task);
    }
    void apiTaskFailed(TaskApiClient* client, TaskApiRunnable* task) override
    {
        _hear(u"failed"_s, client, task);
    }
    bool wait(int count) { return m_heard.tryAcquire(count, timeoutMs); }

    /// What became of a request, its type, code and status, and "here" outside the pool's threads.
    QStringList outcomes; // unguarded: the calls come one at a time
    QVariant result;
    Send then = [](TaskApiClient&) {};

private:
    void _hear(const QString& how, TaskApiClient* client, TaskApiRunnable* task)
    {
        const taskapi::ApiError& error = task->error();
        const bool here = QThread::currentThread() == QCoreApplication::instance()->thread();
        outcomes += u"%1 %2 %3 %4%5"_s.arg(how)
                        .arg(task->taskType())
                        .arg(static_cast<int>(error.code()))
                        .arg(error.status())
                        .arg(here ? u" here"_s : QString());
        result = task->result();
        then(*client);
        m_heard.release();
    }
    QSemaphore m_heard;
};

/// Asks for what does not go into a URL as it is.
class Search final : public TaskApiRunnable
{
public:
    QUrl url() const override { return urlForPath(u"/0/find/"_s); }
    QVariant payload() const override { return QVariantMap{{u"a&b"_s, u"c+d=e %41#"_s}}; }
};
} // namespace

class tst_TaskApi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log.emplace();
        m_status = 200;
        m_body = json("{'token': 'tök', 'expires': '2026-03-10T12:00:00Z'}");
        m_server.emplace([this](const TestServer::Request&, QSslSocket& socket) {
            if (m_status == hangs)
                return;
            if (m_status != closes)
                socket.write(TestServer::answer(m_status, m_body));
            socket.disconnectFromHost();
        });
        taskapi::ServerSettings settings;
        settings.port = m_server->port();
        m_client = std::make_unique<TaskApiClient>(settings);
        m_client->setDelegate(&m_listener.emplace());
        net::HttpConnection::setMaker(&StatusTransport::make);
        Clock::freeze(QDateTime::fromString(u"2026-03-10T11:59:59Z"_s, Qt::ISODate));
        QThreadPool::globalInstance()->setMaxThreadCount(2);
    }
    void cleanup()
    {
        m_client.reset();
        net::HttpConnection::setMaker(nullptr);
        Clock::release();
        m_log.reset();
    }

    void requests_data()
    {
        QTest::addColumn<Send>("send");
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<bool>("authorized");
        const auto row = [](int type, const Send& send, const QByteArray& request,
                            bool authorized) {
            QTest::addRow("%d", type) << send << json(request) << authorized;
        };
        const Send login = [](TaskApiClient& c) { c.login(u"é@b.c"_s, u"pw"_s); };
        const Send account = [](TaskApiClient& c) {
            c.createAccount(u"e"_s, u"p"_s, u"F"_s, u"L"_s, QVariantList{1, true});
        };
        const Send status = [](TaskApiClient& c) { c.status(42); };
        row(1, login,
            "POST /0/account/login/ { 'client_id' : '7F3A9C21-5B0E-4D18-9E6A-3C2B71D04A5F', "
            "'client_name' : 'TODO', 'email' : 'é@b.c', 'password' : 'pw' }",
            false);
        row(2, &TaskApiClient::logout, "POST /0/account/logout/ null", true);
        row(3, account,
            "POST /0/account/new/ { 'email' : 'e', 'first_name' : 'F', 'last_name' : 'L', "
            "'meta' : [ 1, true ], 'password' : 'p' }",
            false);
        row(4, status, "GET /0/tasks/status/?revision=42 ", true);
    }
    void requests()
    {
        QFETCH(const Send, send);
        QFETCH(const QByteArray, request);
        QFETCH(const bool, authorized);
        const int type = QByteArray(QTest::currentDataTag()).toInt();
        m_client->logout();
        QVERIFY(m_listener->wait(1));
        m_client->login({}, {});
        QVERIFY(m_listener->wait(1));
        m_body = json("{'other': 'answer'}");
        send(*m_client);
        QVERIFY(m_listener->wait(1));

        QVERIFY(m_server->requests().first().header("Authorization").isNull());
        const TestServer::Request last = m_server->requests().last();
        QCOMPARE(last.method + ' ' + last.target + ' ' + last.body, request);
        QCOMPARE(last.header("Authorization"), QByteArray(authorized ? "OAuth2 t\xf6k" : ""));
        QVERIFY(last.header("User-Agent").startsWith("Mivora "));
        QCOMPARE(m_listener->outcomes.last(), u"completed %1 1 200"_s.arg(type));
        QCOMPARE(m_listener->result, (QVariantMap{{u"other"_s, u"answer"_s}}));
        // Only a login changes the session, and leaves nothing of it.
        QCOMPARE(m_client->session().contains(u"other"_s), type == 1);
        QCOMPARE(m_client->userAuthToken(), type == 1 ? QString() : u"tök"_s);
    }

    void statuses_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("code");
        const QList<std::pair<int, int>> rows{{200, 1}, {400, 3}, {401, 4}, {403, 5}, {404, 6},
                                              {500, 7}, {503, 7}, {599, 7}, {201, 0}, {204, 0},
                                              {302, 0}, {418, 0}, {499, 0}, {600, 0}, {closes, 2}};
        for (const auto& [status, code] : rows)
            QTest::addRow("%d", status) << status << code;
    }
    void statuses()
    {
        QFETCH(const int, status);
        QFETCH(const int, code);
        m_status = status;
        m_client->login({}, {});
        QVERIFY(m_listener->wait(1));
        const QString how = status == 200 ? u"completed"_s : u"failed"_s;
        QCOMPARE(m_listener->outcomes, QStringList(u"%1 1 %2 %3"_s.arg(how).arg(code).arg(status)));
        QCOMPARE(m_listener->result.isValid(), status != closes);
        QCOMPARE(m_client->session().isEmpty(), status != 200);
    }

    void sessions_data()
    {
        QTest::addColumn<QByteArray>("session");
        QTest::addColumn<bool>("holds");
        const auto row = [](const QByteArray& session, bool holds) {
            QTest::newRow(session.data()) << session << holds;
        };
        row("7", false);
        row("{'expires': '2026-03-10T12:00:00Z'}", false);
        row("{'token': 't'}", false);
        row("{'token': 't', 'expires': 'tomorrow'}", false);
        row("{'token': 't', 'expires': '2026-03-10T11:59:58Z'}", false);
        row("{'token': 't', 'expires': '2026-03-10T11:59:59Z'}", false);
        row("{'token': 't', 'expires': '2026-03-10T12:00:00Z'}", true);
        row("{'token': 't', 'expires': '2026-03-10T13:59:58+02:00'}", false);
        row("{'token': 't', 'expires': '2026-03-10T07:00:00-05:00'}", true);
    }
    void sessions()
    {
        QFETCH(const QByteArray, session);
        QFETCH(const bool, holds);
        // One after the other, so that the logout ends last.
        QThreadPool::globalInstance()->setMaxThreadCount(1);
        m_client->status(0); // without any session
        m_body = json(session);
        m_client->login({}, {});
        QVERIFY(m_listener->wait(1));
        m_client->status(1);
        m_client->logout();
        QVERIFY(m_listener->wait(holds ? 2 : 1));
        QStringList expected{u"completed 1 1 200"_s, u"completed 2 1 200"_s};
        if (holds)
            expected.insert(1, u"completed 4 1 200"_s);
        QCOMPARE(m_listener->outcomes, expected);
    }

    void oddRequests()
    {
        m_client->createAccount({}, {}, {}, {}, QRect());
        QVERIFY(m_listener->wait(1));
        QCOMPARE(m_listener->outcomes, QStringList(u"failed 3 0 -1"_s));
        QVERIFY(m_server->requests().isEmpty());

        Search search;
        QCOMPARE(search.runWithConnection(nullptr).code(), ApiErrorCode::unknown);
        QCOMPARE(search.url(), QUrl());
        search.setClient(TaskApiClient::shared().get());
        QCOMPARE(search.url(), QUrl(u"http://127.0.0.1:8010/0/find/"_s));
        search.setClient(m_client.get());
        QCOMPARE(search.runWithConnection(StatusTransport::make()).code(), ApiErrorCode::success);
        QCOMPARE(m_server->requests().last().target,
                 QByteArray("/0/find/?a%26b=c%2Bd%3De%20%2541%23"));
    }

    void manyAtOnce()
    {
        QThreadPool::globalInstance()->setMaxThreadCount(8);
        const auto send = [this] {
            for (int round = 0; round < 10; ++round) {
                m_client->login({}, {});
                m_client->logout();
                m_client->createAccount({}, {}, {}, {}, round);
            }
        };
        std::thread other(send);
        send();
        other.join();
        QVERIFY(m_listener->wait(60));
        for (const int type : {1, 2, 3})
            QCOMPARE(m_listener->outcomes.count(u"completed %1 1 200"_s.arg(type)), 20);
    }

    void delegateThatIsTakenBack()
    {
        QSemaphore called, taking;
        std::atomic<bool> left = false;
        m_listener->then = [&](TaskApiClient& client) {
            m_status = hangs;
            client.logout();
            called.release();
            taking.acquire();
            for (int i = 0; i < 100; ++i)
                std::this_thread::yield();
            left = true;
        };
        m_client->login({}, {});
        called.acquire();
        taking.release();
        m_client->setDelegate(nullptr);
        QVERIFY(left);
        QVERIFY(m_server->waitForRequests(2));
        // Whoever hears of a login is logged in.
        QVERIFY(!m_server->requests().last().header("Authorization").isNull());
        m_listener.reset();
        m_client->abortRequests();
    }

    void abortedRequestsFail()
    {
        m_status = hangs;
        m_listener->then = &TaskApiClient::logout;
        for (int i = 0; i < 6; ++i)
            m_client->login({}, {});
        QVERIFY(m_server->waitForRequests(2));
        m_client->abortRequests();
        QCOMPARE(m_listener->outcomes.size(), 6);
        QCOMPARE(m_listener->outcomes.count(u"failed 1 2 -1"_s), 2);
        QCOMPARE(m_listener->outcomes.count(u"failed 1 2 -1 here"_s), 4);
        QCOMPARE(m_server->requests().size(), 2);

        m_listener->then = [](TaskApiClient&) {};
        m_status = 200;
        m_client->login({}, {});
        QVERIFY(m_listener->wait(7));
        QCOMPARE(m_listener->outcomes.last(), u"completed 1 1 200"_s);
    }

    void abortsAtAnyMoment()
    {
        m_status = hangs;
        for (int round = 1; round <= 50; ++round) {
            for (int i = 0; i < 3; ++i)
                m_client->logout();
            for (int i = 0; i < round; ++i)
                std::this_thread::yield();
            m_client->abortRequests();
            QCOMPARE(m_listener->outcomes.size(), 3 * round);
        }
    }

    void clientThatLeaves()
    {
        // A delegate may take itself back.
        m_listener->then = [](TaskApiClient& client) { client.setDelegate(nullptr); };
        m_client->login({}, {});
        QVERIFY(m_listener->wait(1));
        m_client->setDelegate(&*m_listener);
        m_status = hangs;
        for (int i = 0; i < 6; ++i)
            m_client->login({}, {});
        QVERIFY(m_server->waitForRequests(3));
        m_client.reset();
        QVERIFY(QThreadPool::globalInstance()->waitForDone(timeoutMs));
        QCOMPARE(m_listener->outcomes.size(), 1);
        QCOMPARE(m_server->requests().size(), 3);
    }

    void programsOwnConnection()
    {
        net::HttpConnection::setMaker(nullptr);
        m_client->login({}, {});
        QVERIFY(m_listener->wait(1));
        QCOMPARE(m_listener->outcomes, QStringList(u"failed 1 0 -1"_s));
        QVERIFY(m_listener->result.isValid());

        m_status = hangs;
        m_client->login({}, {});
        QVERIFY(m_server->waitForRequests(2));
        m_client->abortRequests();
        QCOMPARE(m_listener->outcomes.last(), u"failed 1 2 -1"_s);
        QCOMPARE(m_log->take().size(), 1);
    }

private:
    std::optional<LogWatch> m_log;
    std::atomic<int> m_status;
    QByteArray m_body;
    std::optional<TestServer> m_server;
    std::optional<Listener> m_listener;
    std::unique_ptr<TaskApiClient> m_client;
};

QTEST_GUILESS_MAIN(tst_TaskApi)
#include "tst_taskapi.moc"
