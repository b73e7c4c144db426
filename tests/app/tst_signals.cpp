// The ways a program of this kind ends in order.
#include "tests/app/Child.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Signals : public QObject
{
    Q_OBJECT

private:
    const QString m_program = QStringLiteral(MVR_FRAME_CHILD);

private Q_SLOTS:
    void endInOrder_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("command");
        QTest::newRow("window that refuses to close") << SIGINT << u"window"_s << QString();
        QTest::newRow("inside a dialog") << SIGHUP << u"plain"_s << u"dialog"_s;
        // The child sends it to itself.
        QTest::newRow("before the loop") << 0 << u"early"_s << QString();
    }
    void endInOrder()
    {
        QFETCH(int, signal);
        QFETCH(QString, mode);
        QFETCH(QString, command);
        Child child(m_program, {u"signals"_s, mode});
        QCOMPARE(child.line(), u"ready"_s);
        if (!command.isEmpty()) {
            child.command(command);
            QCOMPARE(child.line(), u"got "_s + command);
        }
        child.signal(signal);
        QCOMPARE(child.line(), u"ended"_s);
        QCOMPARE(child.exitCode(), 0);
    }

    void ignoredSignalStaysIgnored()
    {
        Child child(u"/bin/sh"_s,
                    {u"-c"_s, u"trap '' HUP; exec \"$0\" signals plain"_s, m_program});
        QCOMPARE(child.line(), u"ready"_s);
        child.signal(SIGHUP);
        child.command(u"still here?"_s);
        QCOMPARE(child.line(), u"got still here?"_s);
    }

    void endDoesNotWaitForLookups()
    {
        const QTemporaryDir folder;
        QFile log(folder.filePath(u"log.txt"_s));
        Child child(m_program, {u"lookup"_s, log.fileName()});
        QCOMPARE(child.line(), u"looking up"_s); // a name
        QCOMPARE(child.line(), u"looking up"_s); // a proxy
        child.command(u"end"_s);
        QCOMPARE(child.exitCode(), 7);
        QCOMPARE(child.errors(), QString());
        QVERIFY(log.open(QIODevice::ReadOnly) && log.readAll().endsWith(" last words\n"));
    }
};

QTEST_GUILESS_MAIN(tst_Signals)
#include "tst_signals.moc"
