// The small parts of the frame: the command line, the refusing box, saving on request.
#include "app/CommandLine.h"
#include "app/MVRApp.h"
#include "app/StartupRefusal.h"
#include "app/base/LogHelper.h"
#include "app/base/PathHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/Prompt.h"
#include "app/base/UserMetrics.h"
#include "app/core/TaskCore.h"
#include "net/HttpConnection.h"
#include "net/taskapi/TaskApiClient.h"
#include "tests/support/LogWatch.h"
#include "tests/support/TemporaryHome.h"

#include <QFile>
#include <QSemaphore>
#include <QTest>
#include <QThreadPool>

#include <boost/make_shared.hpp>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {
/// To a server that never answers.
class HangingConnection final : public net::HttpConnection
{
public:
    static boost::shared_ptr<HttpConnection> make()
    {
        return boost::make_shared<HangingConnection>();
    }
    inline static QSemaphore s_called{0};
    inline static QSemaphore s_released{0};
    inline static std::atomic<bool> s_obeys = true;
    inline static std::atomic<bool> s_ended = false;

    bool open(const QString&, unsigned short) override { return true; }
    bool close() override { return true; }
    bool get(const QUrl&, QByteArray&, const net::HttpHeaders&) override { return _hang(); }
    bool post(const QUrl&, const QByteArray&, QByteArray&, const net::HttpHeaders&) override
    {
        return _hang();
    }
    int statusCode() const override { return -1; }
    qint64 contentLength() const override { return -1; }
    int read(QIODevice&, int) override { return -1; }
    QString referer() const override { return {}; }
    void setReferer(const QString&) override {}
    void abort() override { m_aborted.release(); }

private:
    bool _hang()
    {
        s_called.release();
        m_aborted.acquire();
        if (!s_obeys)
            s_released.acquire();
        s_ended = true;
        return false;
    }
    QSemaphore m_aborted;
};
} // namespace

class tst_Frame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandLine()
    {
        const QString name = u"mivora"_s;
        QCOMPARE(CommandLine::init({}), 0);
        QCOMPARE(CommandLine::init({u"--install"_s}), 0);
        QCOMPARE(CommandLine::init({name, u"--Install"_s}), 0);
        QCOMPARE(CommandLine::init({name, u"--install"_s}), 1);
        QCOMPARE(CommandLine::init({name, u"x"_s, u"--uninstall"_s, u"--install"_s}), 2);
    }

    void refusal()
    {
        LogWatch log;
        MVR_LOG_ERR(u"the reason"_s);
        QByteArray logThen;
        QList<Prompt::Question> asked;
        Prompt::setAnswerer([&](const Prompt::Question& question) {
            QFile file(log.path());
            if (file.open(QIODevice::ReadOnly))
                logThen = file.readAll();
            asked << question;
            return QMessageBox::Ok;
        });
        StartupRefusal::show(TaskStorage::NewerVersion);
        StartupRefusal::show(TaskStorage::CorruptedVersion);
        Prompt::setAnswerer({});

        QCOMPARE(asked.size(), 2);
        QCOMPARE(asked.first().icon, QMessageBox::Critical);
        QCOMPARE(asked.first().title, u"Mivora"_s);
        QCOMPARE(asked.first().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        const QString site =
            u"</p><p>Please visit <a href=\"http://www.mivora.example\">www.mivora.example</a> "_s;
        QCOMPARE(asked.first().text,
                 u"<p>The task database was created with a newer version of Mivora application."_s +
                     site + u"to upgrade your installation.</p>"_s);
        QCOMPARE(asked.last().text,
                 u"<p>Task database failed to load for some reason. Mivora can not continue to "
                 "avoid further database corruption."_s +
                     site + u"and request help.</p>"_s);
        QVERIFY2(logThen.contains("the reason"), "on the disk before the user reads the box");
        QCOMPARE(log.take(), QStringList{u"Critical the reason"_s});
    }

    void saveOnRequest()
    {
        const TemporaryHome home;
        LogWatch log;
        auto* app = qobject_cast<MVRApp*>(QCoreApplication::instance());
        QVERIFY(app);
        // The frame never looks at the manager; there is none without a session.
        alignas(void*) char nobody[sizeof(void*)] = {};
        auto& manager = reinterpret_cast<QSessionManager&>(nobody);

        Q_EMIT app->saveStateRequest(manager);
        Q_EMIT app->commitDataRequest(manager);
        QVERIFY2(!dynamic_singleton<TaskCore>::exists() &&
                     !dynamic_singleton<ProgramSettings>::exists() &&
                     !dynamic_singleton<UserMetrics>::exists(),
                 "saving makes nothing that was not loaded");
        QVERIFY(!QFile::exists(PathHelper::settingsFile()));
        QVERIFY(!QFile::exists(PathHelper::metricsFile()));

        const QString id = UserMetrics::installationId();
        Q_EMIT app->commitDataRequest(manager);
        dynamic_singleton<UserMetrics>::destroy();
        QVERIFY(dynamic_singleton<UserMetrics>::inst().load(PathHelper::metricsFile()));
        QCOMPARE(UserMetrics::installationId(), id);
        dynamic_singleton<UserMetrics>::destroy();

        QVERIFY(dynamic_singleton<ProgramSettings>::inst().load(PathHelper::settingsFile()));
        Q_EMIT app->saveStateRequest(manager);
        QVERIFY(QFile::remove(PathHelper::settingsFile()));
        Q_EMIT app->commitDataRequest(manager);
        QVERIFY(QFile::exists(PathHelper::settingsFile()));
        dynamic_singleton<ProgramSettings>::destroy();

        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        const QString path = PathHelper::databaseFile();
        TaskStorage& storage = *dynamic_singleton<TaskCore>::inst().storage();
        storage.renameTask(storage.createTask(TaskStorage::ms_inboxId), u"Water the plants"_s);
        Q_EMIT app->saveStateRequest(manager);
        QVERIFY(QFile::exists(path));
        dynamic_singleton<TaskCore>::destroy();

        QVERIFY(QFile::remove(path));
        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        Q_EMIT app->saveStateRequest(manager);
        QVERIFY2(!QFile::exists(path), "nothing has changed");
        Q_EMIT app->commitDataRequest(manager);
        QVERIFY2(QFile::exists(path), "at the session's end it is written in any case");
        dynamic_singleton<TaskCore>::destroy();
        QCOMPARE(log.take(), QStringList());
    }

    void endOfTheStoreEndsRequests_data()
    {
        QTest::addColumn<bool>("obeys");
        QTest::newRow("that obey") << true;
        QTest::newRow("or leaves them") << false;
    }
    void endOfTheStoreEndsRequests()
    {
        QFETCH(const bool, obeys);
        HangingConnection::s_obeys = obeys;
        HangingConnection::s_ended = false;
        const TemporaryHome home;
        const LogWatch log;
        net::HttpConnection::setMaker(&HangingConnection::make);
        QCOMPARE(dynamic_singleton<TaskCore>::inst().init(), TaskStorage::NoError);
        taskapi::TaskApiClient::shared()->logout();
        QVERIFY(HangingConnection::s_called.tryAcquire(1, 20'000));
        dynamic_singleton<TaskCore>::destroy();
        net::HttpConnection::setMaker(nullptr);
        QCOMPARE(HangingConnection::s_ended, obeys);
        HangingConnection::s_released.release(obeys ? 0 : 1);
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
