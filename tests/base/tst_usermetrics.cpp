// The metrics file: what is read of it, and what is not.
#include "app/base/UserMetrics.h"
#include "app/base/dynamic_singleton.h"
#include "tests/base/Files.h"
#include "tests/support/LogWatch.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class tst_UserMetrics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void load()
    {
        LogWatch log;
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"metrics.xml"_s);
        QCOMPARE(::mkfifo(qPrintable(path), 0600), 0);
        QVERIFY2(!UserMetrics().load(path), "a pipe is not waited for");
        QVERIFY(QFile::remove(path));
        for (const QByteArray& document :
             {"<other><id>abc</id></other>"_ba, "<metrics><id>a<b/>c</id></metrics>"_ba,
              "<metrics><id>abc</id>"_ba,
              "<metrics><x><id>no</id></x><metrics/><id>abc</id></metrics>"_ba}) {
            const bool isSound = document.contains("<x>");
            writeFile(path, document);
            QCOMPARE(dynamic_singleton<UserMetrics>::inst().load(path), isSound);
            QCOMPARE(log.take().size(), isSound ? 0 : 1);
            QCOMPARE(UserMetrics::installationId().size(), isSound ? 3 : 36);
            dynamic_singleton<UserMetrics>::destroy();
        }
    }
};

QTEST_GUILESS_MAIN(tst_UserMetrics)
#include "tst_usermetrics.moc"
