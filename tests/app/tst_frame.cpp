// The small parts of the frame: the command line, the refusing box, saving on request.
#include "app/CommandLine.h"
#include "app/MVRApp.h"
#include "app/StartupRefusal.h"
#include "app/base/LogHelper.h"
#include "app/base/PathHelper.h"
#include "app/base/Prompt.h"
#include "app/core/TaskCore.h"
#include "tests/support/LogWatch.h"
#include "tests/support/TemporaryHome.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Frame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandLine_data();
    void commandLine();
    void refusal_data();
    void refusal();
    void saveOnRequest();
};

void tst_Frame::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("result");
    QTest::newRow("nothing at all") << QStringList() << 0;
    QTest::newRow("name only") << QStringList{u"mivora"_s} << 0;
    QTest::newRow("option as name") << QStringList{u"--install"_s} << 0;
    QTest::newRow("install") << QStringList{u"mivora"_s, u"--install"_s} << 1;
    QTest::newRow("uninstall") << QStringList{u"mivora"_s, u"--uninstall"_s} << 2;
    QTest::newRow("first wins") << QStringList{u"mivora"_s, u"x"_s, u"--uninstall"_s,
                                               u"--install"_s}
                                << 2;
    QTest::newRow("other case") << QStringList{u"mivora"_s, u"--Install"_s} << 0;
    QTest::newRow("with a value") << QStringList{u"mivora"_s, u"--install=1"_s} << 0;
}

void tst_Frame::commandLine()
{
    QFETCH(QStringList, arguments);
    QTEST(CommandLine::init(arguments), "result");
}

void tst_Frame::refusal_data()
{
    const QString failed =
        u"<p>Task database failed to load for some reason. Mivora can not continue to avoid "
        "further database corruption.</p><p>Please visit <a href=\"http://www.mivora.example\">"
        "www.mivora.example</a> and request help.</p>"_s;
    QTest::addColumn<TaskStorage::ErrorType>("error");
    QTest::addColumn<QString>("text");
    QTest::newRow("newer")
        << TaskStorage::NewerVersion
        << u"<p>The task database was created with a newer version of Mivora application.</p>"
           "<p>Please visit <a href=\"http://www.mivora.example\">www.mivora.example</a> to "
           "upgrade your installation.</p>"_s;
    QTest::newRow("corrupted") << TaskStorage::CorruptedVersion << failed;
    QTest::newRow("unreadable") << TaskStorage::ReadFailure << failed;
}

void tst_Frame::refusal()
{
    QFETCH(TaskStorage::ErrorType, error);
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
    StartupRefusal::show(error);
    Prompt::setAnswerer({});

    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked.first().title, u"Mivora"_s);
    QTEST(asked.first().text, "text");
    QCOMPARE(asked.first().format, Qt::RichText);
    QCOMPARE(asked.first().icon, QMessageBox::Critical);
    QCOMPARE(asked.first().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(asked.first().defaultButton, QMessageBox::NoButton);
    QVERIFY2(logThen.contains("the reason"), "on the disk before the user reads the box");
    QCOMPARE(log.take(), QStringList{u"Critical the reason"_s});
}

void tst_Frame::saveOnRequest()
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
    QVERIFY2(!dynamic_singleton<TaskCore>::exists(), "saving makes nothing that was not loaded");

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

int main(int argc, char** argv)
{
    const TemporaryHome home;
    MVRApp app(u"test-frame"_s, argc, argv);
    tst_Frame test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_frame.moc"
