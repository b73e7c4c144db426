// The signals that end programs end this kind in order.
#include "tests/app/Child.h"

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
    void endInOrder_data();
    void endInOrder();
    void signalBeforeTheLoop();
    void signalInsideADialog();
    void ignoredSignalStaysIgnored();
    void writeLimitFailsTheWrite();
};

void tst_Signals::endInOrder_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("mode");
    QTest::newRow("terminate") << SIGTERM << u"plain"_s;
    QTest::newRow("interrupt") << SIGINT << u"plain"_s;
    QTest::newRow("hang up") << SIGHUP << u"plain"_s;
    QTest::newRow("window that refuses to close") << SIGTERM << u"window"_s;
}

void tst_Signals::endInOrder()
{
    QFETCH(int, signal);
    QFETCH(QString, mode);
    Child child({u"signals"_s, mode});
    child.start();
    QCOMPARE(child.line(), u"ready"_s);
    sendSignal(child, signal);
    QCOMPARE(child.line(), u"ended"_s);
    QCOMPARE(child.exitCode(), 0);
}

void tst_Signals::signalBeforeTheLoop()
{
    Child child({u"signals"_s, u"early"_s});
    child.start();
    QCOMPARE(child.line(), u"ready"_s);
    QCOMPARE(child.line(), u"ended"_s);
    QCOMPARE(child.exitCode(), 0);
}

void tst_Signals::signalInsideADialog()
{
    Child child({u"signals"_s, u"plain"_s});
    child.start();
    QCOMPARE(child.line(), u"ready"_s);
    child.command(u"dialog"_s);
    QCOMPARE(child.line(), u"got dialog"_s);
    sendSignal(child, SIGTERM);
    QCOMPARE(child.line(), u"ended"_s);
    QCOMPARE(child.exitCode(), 0);
}

void tst_Signals::ignoredSignalStaysIgnored()
{
    Child child({});
    child.process().setProgram(u"/bin/sh"_s);
    child.process().setArguments(
        {u"-c"_s, u"trap '' HUP; exec \"$0\" signals plain"_s, QStringLiteral(MVR_FRAME_CHILD)});
    child.start();
    QCOMPARE(child.line(), u"ready"_s);
    sendSignal(child, SIGHUP);
    child.command(u"still here?"_s);
    QCOMPARE(child.line(), u"got still here?"_s);
    sendSignal(child, SIGTERM);
    QCOMPARE(child.line(), u"ended"_s);
    QCOMPARE(child.exitCode(), 0);
}

void tst_Signals::writeLimitFailsTheWrite()
{
    Child child({u"signals"_s, u"limit"_s});
    child.start();
    QCOMPARE(child.line(), u"refused"_s);
    QCOMPARE(child.line(), u"ready"_s);
}

QTEST_GUILESS_MAIN(tst_Signals)
#include "tst_signals.moc"
