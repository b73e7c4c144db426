// The small parts of the frame: the refusing box, saving before anything is loaded, the end.
#include "app/MVRApp.h"
#include "app/StartupRefusal.h"
#include "app/base/PathHelper.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "net/HttpConnection.h"
#include "net/taskapi/TaskApiClient.h"
#include "tests/support/LogWatch.h"
#include "tests/support/TemporaryHome.h"
#include "ui/controls/Prompt.h"

#include <QFile>
#include <QSemaphore>
#include <QTest>
#include <QThreadPool>

#include <boost/make_shared.hpp>

using namespace Qt::StringLiterals;

namespace {
/// To a server that does not answer.
class HangingConnection final : public net::HttpConnection
{
public:
    static boost::shared_ptr<HttpConnection> make()
    {
        return boost::make_shared<HangingConnection>();
    }
    inline static QSemaphore s_called{0};
    inline static QSemaphore s_released{0};

    bool open(const QString&, unsigned short) override { return true; }
    bool close() override { return true; }
    bool get(const QUrl&, QByteArray&, const net::HttpHeaders&) override { return false; }
    bool post(const QUrl&, const QByteArray&, QByteArray&, const net::HttpHeaders&) override
    {
        s_called.release();
        s_released.acquire();
        return false;
    }
    int statusCode() const override { return -1; }
    qint64 contentLength() const override { return -1; }
    int read(QIODevice&, int) override { return -1; }
    QString referer() const override { return {}; }
    void setReferer(const QString&) override {}
    void abort() override {}
};
} // namespace

class tst_Frame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusalTellsANewerVersionFromDamage()
    {
        QString text;
        Prompt::setAnswerer([&text](const Prompt::Question& question) {
            text = question.text;
            return QMessageBox::Ok;
        });
        for (const auto error : {TaskStorage::NewerVersion, TaskStorage::CorruptedVersion}) {
            StartupRefusal::show(error);
            QVERIFY(text.contains(error == TaskStorage::NewerVersion ? "newer version of Mivora"_L1
                                                                     : "failed to load"_L1));
            QVERIFY(
                text.contains("<a href=\"http://www.mivora.example\">www.mivora.example</a>"_L1));
        }
        Prompt::setAnswerer({});
    }

    void savingMakesNothingThatWasNotLoaded()
    {
        // The frame never looks at the manager; there is none without a session.
        alignas(void*) char nobody[sizeof(void*)] = {};
        auto& manager = reinterpret_cast<QSessionManager&>(nobody);
        Q_EMIT qApp->saveStateRequest(manager);
        Q_EMIT qApp->commitDataRequest(manager);
        QVERIFY(!dynamic_singleton<TaskCore>::exists());
        QVERIFY(!QFile::exists(PathHelper::settingsFile()));
        QVERIFY(!QFile::exists(PathHelper::metricsFile()));
    }

    void endOfTheStoreDoesNotWaitForRequests()
    {
        const LogWatch log;
        net::HttpConnection::setMaker(&HangingConnection::make);
        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        taskapi::TaskApiClient::shared()->logout();
        QVERIFY(HangingConnection::s_called.tryAcquire(1, 20'000));
        dynamic_singleton<TaskCore>::destroy();
        net::HttpConnection::setMaker(nullptr);
        HangingConnection::s_released.release();
        QThreadPool::globalInstance()->waitForDone();
    }
};

int main(int argc, char** argv)
{
    const TemporaryHome home;
    MVRApp app(u"test-frame"_s, argc, argv);
    tst_Frame test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_frame.moc"
