// The metrics file: what is read of it and what becomes of failures.
#include "app/base/UserMetrics.h"
#include "app/base/dynamic_singleton.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"

#include <QFile>
#include <QTest>

#include <cerrno>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class tst_UserMetrics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        DiskFaults::reset();
        dynamic_singleton<UserMetrics>::destroy();
    }

    void load_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<bool>("loaded");
        QTest::addColumn<QString>("id");
        const auto row = [](const char* name, const QByteArray& document, bool loaded,
                            const QString& id) { QTest::newRow(name) << document << loaded << id; };
        row("usual", "<?xml version=\"1.0\"?><metrics><id>abc</id></metrics>", true, u"abc"_s);
        row("others are skipped", "<metrics><x><id>no</id></x><metrics/><id>abc</id></metrics>",
            true, u"abc"_s);
        row("commented", "<metrics><id>a<!-- x -->bc</id></metrics>", true, u"abc"_s);
        row("no id", "<metrics/>", true, u""_s);
        row("another root", "<other><id>abc</id></other>", false, u""_s);
        row("an element in the id", "<metrics><id>a<b/>c</id></metrics>", false, u""_s);
        row("cut", "<metrics><id>abc</id>", false, u""_s);
        row("empty", "", false, u""_s);
    }

    void load()
    {
        QFETCH(const QByteArray, document);
        QFETCH(const bool, loaded);
        QFETCH(const QString, id);
        LogWatch log;
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"metrics.xml"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(document);
        file.close();

        QCOMPARE(dynamic_singleton<UserMetrics>::inst().load(path), loaded);
        QCOMPARE(log.take().size(), loaded ? 0 : 1);
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

    void failedSavesAreLogged_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("text");
        QTest::newRow("folder gone") << u""_s << u"Failed to open metrics for writing "_s;
        QTest::newRow("disk full") << u"write"_s << u"Failed to write metrics to "_s;
        QTest::newRow("swap fails") << u"rename"_s << u"Safe file update failed. Updating "_s;
    }

    void failedSavesAreLogged()
    {
        QFETCH(const QString, call);
        QFETCH(const QString, text);
        LogWatch log;
        const QTemporaryDir folder;
        const QString path =
            folder.filePath(call.isEmpty() ? u"gone/metrics.xml"_s : u"metrics.xml"_s);
        if (call == "write"_L1)
            DiskFaults::failWritesAfter(0, ENOSPC, "metrics.xml");
        else if (!call.isEmpty())
            DiskFaults::failNext(qPrintable(call), EIO, "metrics.xml", DiskFaults::always);

        dynamic_singleton<UserMetrics>::inst().save(path);
        const QStringList lines = log.take();
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().startsWith(u"Critical "_s + text + path), qPrintable(lines.first()));
    }
};

QTEST_GUILESS_MAIN(tst_UserMetrics)
#include "tst_usermetrics.moc"
