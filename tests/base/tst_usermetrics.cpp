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
    void cleanup() { dynamic_singleton<UserMetrics>::destroy(); }

    void load_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("id");
        const auto row = [](const char* name, const QByteArray& document, const QString& id) {
            QTest::newRow(name) << document << id;
        };
        row("others are skipped", "<metrics><x><id>no</id></x><metrics/><id>abc</id></metrics>",
            u"abc"_s);
        row("another root", "<other><id>abc</id></other>", {});
        row("an element in the id", "<metrics><id>a<b/>c</id></metrics>", {});
        row("cut", "<metrics><id>abc</id>", {});
    }

    void load()
    {
        QFETCH(const QByteArray, document);
        QFETCH(const QString, id);
        LogWatch log;
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"metrics.xml"_s);
        writeFile(path, document);
        QCOMPARE(dynamic_singleton<UserMetrics>::inst().load(path), !id.isEmpty());
        QCOMPARE(log.take().size(), id.isEmpty() ? 1 : 0);
        const QString known = UserMetrics::installationId();
        if (id.isEmpty())
            QCOMPARE(known.size(), 36);
        else
            QCOMPARE(known, id);
    }

    void pipeIsNotWaitedFor()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"metrics.xml"_s);
        QCOMPARE(::mkfifo(qPrintable(path), 0600), 0);
        QVERIFY(!dynamic_singleton<UserMetrics>::inst().load(path));
    }
};

QTEST_GUILESS_MAIN(tst_UserMetrics)
#include "tst_usermetrics.moc"
