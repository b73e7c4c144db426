// What the frame does at the end of a session that began before anything was loaded.
#include "app/MVRApp.h"
#include "app/base/PathHelper.h"
#include "app/base/dynamic_singleton.h"
#include "app/core/TaskCore.h"
#include "tests/support/TemporaryHome.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Frame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
};

int main(int argc, char** argv)
{
    const TemporaryHome home;
    MVRApp app(u"test-frame"_s, argc, argv);
    tst_Frame test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_frame.moc"
