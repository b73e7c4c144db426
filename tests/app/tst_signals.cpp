// The ways a program of this kind ends in order.
#include "tests/app/Child.h"

#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {
void sendSignal(Child& child, int signal)
{
    ::kill(static_cast<pid_t>(child.process().processId()), signal);
}
} // namespace

class tst_Signals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endInOrder_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("command");
        QTest::newRow("interrupt") << SIGINT << u"plain"_s << QString();
        QTest::newRow("hang up") << SIGHUP << u"plain"_s << QString();
        QTest::newRow("window that refuses to close") << SIGTERM << u"window"_s << QString();
        QTest::newRow("inside a dialog") << SIGTERM << u"plain"_s << u"dialog"_s;
        // The child sends it to itself.
        QTest::newRow("before the loop") << 0 << u"early"_s << QString();
    }
    void endInOrder()
    {
        QFETCH(int, signal);
        QFETCH(QString, mode);
        QFETCH(QString, command);
        Child child({u"signals"_s, mode});
        child.start();
        QCOMPARE(child.line(), u"ready"_s);
        if (!command.isEmpty()) {
            child.command(command);
            QCOMPARE(child.line(), u"got "_s + command);
        }
        sendSignal(child, signal);
        QCOMPARE(child.line(), u"ended"_s);
        QCOMPARE(child.exitCode(), 0);
    }

    void ignoredSignalStaysIgnored()
    {
        Child child({});
        child.process().setProgram(u"/bin/sh"_s);
        child.process().setArguments({u"-c"_s, u"trap '' HUP; exec \"$0\" signals plain"_s,
                                      QStringLiteral(MVR_FRAME_CHILD)});
        child.start();
        QCOMPARE(child.line(), u"ready"_s);
        sendSignal(child, SIGHUP);
        child.command(u"still here?"_s);
        QCOMPARE(child.line(), u"got still here?"_s);
        sendSignal(child, SIGTERM);
        QCOMPARE(child.line(), u"ended"_s);
        QCOMPARE(child.exitCode(), 0);
    }

    void endDoesNotWaitForNameLookups()
    {
        const QTemporaryDir folder;
        QFile log(folder.filePath(u"log.txt"_s));
        Child child({u"lookup"_s, log.fileName()});
        child.start();
        QCOMPARE(child.line(), u"looking up"_s);
        child.command(u"end"_s);
        QCOMPARE(child.exitCode(), 7);
        QVERIFY(log.open(QIODevice::ReadOnly) && log.readAll().endsWith(" last words\n"));
    }

    void writeLimitFailsTheWrite()
    {
        Child child({u"signals"_s, u"limit"_s});
        child.start();
        QCOMPARE(child.line(), u"refused"_s);
        QCOMPARE(child.line(), u"ready"_s);
    }
};

QTEST_GUILESS_MAIN(tst_Signals)
#include "tst_signals.moc"
