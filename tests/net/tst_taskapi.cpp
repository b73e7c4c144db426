// The task server's client over a transport that does what it is told.
#include "net/taskapi/ITaskApiClientDelegate.h"
#include "net/taskapi/TaskApiClient.h"
#include "net/taskapi/TaskApiRunnable.h"

#include <QSemaphore>
#include <QTest>
#include <QThreadPool>
#include <QUrl>

#include <boost/make_shared.hpp>

#include <thread>

using namespace Qt::StringLiterals;
using taskapi::TaskApiClient;
using taskapi::TaskApiRunnable;

namespace {
constexpr int timeoutMs = 20000;
/// Reaches no server: keeps what is sent and gives the same answer to everything. One at a time.
class Transport final : public net::HttpConnection
{
public:
    static inline QByteArray sent;     ///< who sends what: method, address, body, authorization
    static inline QSemaphore begun{0}; ///< released by every request
    static inline QSemaphore aborts{0};
    static inline int wantedAborts; ///< a request waits for so many, and then fails

    static boost::shared_ptr<HttpConnection> make() { return boost::make_shared<Transport>(); }

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
    int statusCode() const override { return 200; }
    qint64 contentLength() const override { return -1; }
    int read(QIODevice&, int) override { return -1; }
    QString referer() const override { return m_referer; }
    void setReferer(const QString& referer) override { m_referer = referer; }
    void abort() override { aborts.release(); }

private:
    bool _exchange(const QString& method, const QUrl& url, const QByteArray& body,
                   QByteArray& response, const net::HttpHeaders& headers)
    {
        const QString target = url.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority);
        const QStringList request{m_referer + u':', method, target, QString::fromUtf8(body),
                                  headers.value(u"Authorization"_s)};
        sent = request.join(u' ').toUtf8().replace('"', '\'');
        response = R"({"token": "tök", "expires": "2999-03-10T12:00:00Z"})";
        begun.release();
        aborts.acquire(wantedAborts);
        return wantedAborts == 0;
    }

    QString m_referer;
};

} // namespace

class tst_TaskApi : public QObject, public taskapi::ITaskApiClientDelegate
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qputenv("MVR_TEST_SERVICE", "service.example");
        Transport::begun.tryAcquire(Transport::begun.available());
        Transport::wantedAborts = 0;
        net::HttpConnection::setMaker(&Transport::make);
        m_client = std::make_unique<TaskApiClient>();
        m_client->setDelegate(this);
        m_outcomes.clear();
        // One after the other, so that the last one sent ends last.
        QThreadPool::globalInstance()->setMaxThreadCount(1);
    }
    void cleanup()
    {
        m_client.reset();
        QThreadPool::globalInstance()->waitForDone();
        net::HttpConnection::setMaker(nullptr);
    }

    void requests()
    {
        const auto expect = [this](const QString& outcome, const QByteArray& request) {
            QCOMPARE(_take(1), outcome);
            QCOMPARE(Transport::sent, "Mivora 0.2.608: " + request);
        };
        // Where there is no service, nothing is asked.
        qunsetenv("MVR_TEST_SERVICE");
        m_client->login({}, {});
        qputenv("MVR_TEST_SERVICE", "service.example");
        m_client->logout();
        expect(u"completed 2 1 "_s, "POST /0/account/logout/ null ");
        m_client->login(u"é@b.c"_s, u"pw"_s);
        expect(u"completed 1 1 tök"_s,
               "POST /0/account/login/ { 'client_id' : '7F3A9C21-5B0E-4D18-9E6A-3C2B71D04A5F', "
               "'client_name' : 'TODO', 'email' : 'é@b.c', 'password' : 'pw' } ");
        m_client->status(42);
        expect(u"completed 4 1 tök"_s, "GET /0/tasks/status/?revision=42  OAuth2 tök");
    }

    void delegateThatIsTakenBack()
    {
        m_client->login({}, {});
        m_called.acquire();
        m_leave.release();
        m_client->setDelegate(nullptr);
        QVERIFY2(m_left.tryAcquire(), "it is still being called");
    }

    void abortedRequestsFail()
    {
        Transport::wantedAborts = 1;
        m_client->login({}, {});
        m_client->logout(); // waits for a thread
        QVERIFY(Transport::begun.tryAcquire(1, timeoutMs));
        m_client->abortRequests();
        QCOMPARE(_take(2), u"failed 1 2 /failed 2 2 "_s);
        QCOMPARE(Transport::begun.available(), 0);
    }

private:
    void apiTaskCompleted(TaskApiClient* client, TaskApiRunnable* task) override
    {
        _hear(u"completed"_s, *client, *task);
    }
    void apiTaskFailed(TaskApiClient* client, TaskApiRunnable* task) override
    {
        _hear(u"failed"_s, *client, *task);
    }
    void _hear(const QString& how, const TaskApiClient& client, const TaskApiRunnable& task)
    {
        const QString outcome = u"%1 %2 %3 "_s.arg(how).arg(task.taskType());
        m_outcomes += outcome.arg(int(task.error().code())) + client.userAuthToken();
        m_called.release();
        m_leave.acquire();
        for (int i = 0; i < 100; ++i)
            std::this_thread::yield();
        m_left.release();
    }

    /// The next outcomes: how the requests ended, their types and errors, and whose session it is.
    QString _take(int count)
    {
        m_leave.release(count);
        if (!m_left.tryAcquire(count, timeoutMs))
            return u"nothing heard"_s;
        m_called.acquire(count);
        return std::exchange(m_outcomes, {}).join(u'/');
    }

    std::unique_ptr<TaskApiClient> m_client;
    QStringList m_outcomes; // unguarded: the calls come one at a time
    QSemaphore m_called, m_leave, m_left;
};

QTEST_GUILESS_MAIN(tst_TaskApi)
#include "tst_taskapi.moc"
