// A program that was built without a service asks no server for anything.
#include "net/HttpConnection.h"
#include "net/taskapi/TaskApiClient.h"

#include <QTest>
#include <QThreadPool>

#include <atomic>

class tst_NoService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noTaskRequest()
    {
        static std::atomic<int> made = 0;
        net::HttpConnection::setMaker(+[] {
            ++made;
            return boost::shared_ptr<net::HttpConnection>();
        });
        taskapi::TaskApiClient client;
        client.logout();
        QThreadPool::globalInstance()->waitForDone();
        net::HttpConnection::setMaker(nullptr);
        QCOMPARE(made.load(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_NoService)
#include "tst_noservice.moc"
