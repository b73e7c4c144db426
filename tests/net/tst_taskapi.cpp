// The task server's client over a transport that does what it is told.
#include "app/base/Clock.h"
#include "net/taskapi/ITaskApiClientDelegate.h"
#include "net/taskapi/TaskApiClient.h"
#include "net/taskapi/TaskApiRunnable.h"
#include "tests/support/LogWatch.h"

#include <QSemaphore>
#include <QTest>
#include <QThreadPool>
#include <QUrl>

#include <boost/make_shared.hpp>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using taskapi::TaskApiClient;
using taskapi::TaskApiRunnable;

namespace {
constexpr int timeoutMs = 20000;
// What the transport can do instead of answering with a status.
constexpr int fails = -1;
constexpr int hangs = 0;

/// Reaches no server: keeps what is sent and gives the same answer to everything.
class Transport final : public net::HttpConnection
{
public:
    static inline std::atomic<int> status;
    static inline QByteArray answer;
    static inline QMutex mutex; // guards the rest
    static inline QWaitCondition changed;
    static inline QStringList sent; ///< who sends what: method, address, body, authorization

    static boost::shared_ptr<HttpConnection> make() { return boost::make_shared<Transport>(); }
    static bool wait(int count)
    {
        const QDeadlineTimer deadline(timeoutMs);
        const QMutexLocker lock(&mutex);
        while (sent.size() < count && changed.wait(&mutex, deadline)) {
        }
        return sent.size() == count;
    }

    bool open(const QString&, unsigned short) override { return true; }
    bool close() override { return true; }
    bool get(const QUrl& url, QByteArray& response, const net::HttpHeaders& headers) override
    {
        return _exchange(u"GET"_s, url, {}, response, headers);
    }
    bool post(const QUrl& url, const QByteArray& body, QByteArray& response,
              const net::HttpHeaders& headers) override
    {
        return _exchange(u"POST"_s, url, body, response, headers);
    }
    int statusCode() const override { return status; }
    qint64 contentLength() const override { return -1; }
    int read(QIODevice&, int) override { return -1; }
    QString referer() const override { return m_referer; }
    void setReferer(const QString& referer) override { m_referer = referer; }
    void abort() override
    {
        const QMutexLocker lock(&mutex);
        m_aborted = true;
        changed.wakeAll();
    }

private:
    bool _exchange(const QString& method, const QUrl& url, const QByteArray& body,
                   QByteArray& response, const net::HttpHeaders& headers)
    {
        const QString target = url.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority);
        const QStringList request{m_referer + u':', method, target, QString::fromUtf8(body),
                                  headers.value(u"Authorization"_s)};
        const QMutexLocker lock(&mutex);
        sent.append(request.join(u' '));
        changed.wakeAll();
        while (status == hangs && !m_aborted)
            changed.wait(&mutex);
        response = answer;
        return status > hangs && !m_aborted;
    }

    QString m_referer;
    bool m_aborted = false;
};

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
    std::function<void(TaskApiClient&)> then = [](TaskApiClient&) {};

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
} // namespace

class tst_TaskApi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log.emplace();
        Transport::status = 200;
        Transport::answer = R"({"token": "tök", "expires": "2026-03-10T12:00:00Z"})";
        Transport::sent.clear();
        net::HttpConnection::setMaker(&Transport::make);
        m_client = std::make_unique<TaskApiClient>();
        m_client->setDelegate(&m_listener.emplace());
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

    void requests()
    {
        const auto expect = [this](int type, const QByteArray& request) {
            QVERIFY(m_listener->wait(1));
            QCOMPARE(m_listener->outcomes.last(), u"completed %1 1 200"_s.arg(type));
            QCOMPARE(Transport::sent.last().toUtf8().replace('"', '\''),
                     "Mivora 0.2.608: " + request);
        };
        m_client->logout();
        expect(2, "POST /0/account/logout/ null ");
        m_client->login(u"é@b.c"_s, u"pw"_s);
        expect(1, "POST /0/account/login/ { 'client_id' : '7F3A9C21-5B0E-4D18-9E6A-3C2B71D04A5F', "
                  "'client_name' : 'TODO', 'email' : 'é@b.c', 'password' : 'pw' } ");

        Transport::answer = R"({"other": "answer"})";
        m_client->createAccount(u"e"_s, u"p"_s, u"F"_s, u"L"_s, QVariantList{1, true});
        expect(3, "POST /0/account/new/ { 'email' : 'e', 'first_name' : 'F', 'last_name' : 'L', "
                  "'meta' : [ 1, true ], 'password' : 'p' } ");
        const QVariantMap answer{{u"other"_s, u"answer"_s}};
        QCOMPARE(m_listener->result, answer);
        m_client->logout();
        expect(2, "POST /0/account/logout/ null OAuth2 tök");
        m_client->status(42);
        expect(4, "GET /0/tasks/status/?revision=42  OAuth2 tök");
        // Only a login changes the session.
        QCOMPARE(m_client->userAuthToken(), u"tök"_s);
        m_client->login({}, {});
        QVERIFY(m_listener->wait(1));
        QCOMPARE(m_client->session(), answer);
    }

    void statuses()
    {
        const QList<std::pair<int, int>> codes{{204, 0}, {400, 3}, {401, 4}, {403, 5}, {404, 6},
                                               {499, 0}, {500, 7}, {599, 7}, {600, 0}, {fails, 2}};
        for (const auto& [status, code] : codes) {
            Transport::status = status;
            m_client->login({}, {});
            QVERIFY(m_listener->wait(1));
            QCOMPARE(m_listener->outcomes.last(), u"failed 1 %1 %2"_s.arg(code).arg(status));
            QCOMPARE(m_listener->result.isValid(), status != fails);
            QVERIFY(m_client->session().isEmpty());
        }
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
        QFETCH(QByteArray, session);
        QFETCH(const bool, holds);
        // One after the other, so that the logout ends last.
        QThreadPool::globalInstance()->setMaxThreadCount(1);
        m_client->status(0); // without any session
        Transport::answer = session.replace('\'', '"');
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

    void delegateThatIsTakenBack()
    {
        QSemaphore called, taking;
        QString token;
        std::atomic<bool> left = false;
        m_listener->then = [&](TaskApiClient& client) {
            token = client.userAuthToken();
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
        // Whoever hears of a login is logged in.
        QCOMPARE(token, u"tök"_s);
    }

    void abortedRequestsFail()
    {
        Transport::status = hangs;
        m_listener->then = &TaskApiClient::logout;
        for (int i = 0; i < 6; ++i)
            m_client->login({}, {});
        QVERIFY(Transport::wait(2));
        m_client->abortRequests();
        QCOMPARE(m_listener->outcomes.size(), 6);
        QCOMPARE(m_listener->outcomes.count(u"failed 1 2 -1"_s), 2);
        QCOMPARE(m_listener->outcomes.count(u"failed 1 2 -1 here"_s), 4);
        QCOMPARE(Transport::sent.size(), 2);

        m_listener->then = [](TaskApiClient&) {};
        Transport::status = 200;
        m_client->login({}, {});
        QVERIFY(m_listener->wait(7));
        QCOMPARE(m_listener->outcomes.last(), u"completed 1 1 200"_s);
    }

private:
    std::optional<LogWatch> m_log;
    std::optional<Listener> m_listener;
    std::unique_ptr<TaskApiClient> m_client;
};

QTEST_GUILESS_MAIN(tst_TaskApi)
#include "tst_taskapi.moc"
