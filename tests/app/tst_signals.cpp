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
    void endInOrder()
    {
        for (const QString& mode : {u"dialog"_s, u"early"_s}) {
            Child child(m_program, {u"signals"_s, mode});
            if (mode == u"dialog") {
                QCOMPARE(child.line(), u"ready"_s);
                child.signal(SIGINT);
            }
            QCOMPARE(child.line(), u"ended"_s);
            QCOMPARE(child.exitCode(), 0);
        }
    }

    void deadlineEndsWhatHangs()
    {
        const QTemporaryDir folder;
        QFile log(folder.filePath(u"log.txt"_s));
        Child child(m_program, {u"deadline"_s, log.fileName()});
        QCOMPARE(child.exitCode(), 7);
        QCOMPARE(child.errors(), QString());
        QVERIFY(log.open(QIODevice::ReadOnly) && log.readAll().endsWith(" last words\n"));
    }
};

QTEST_GUILESS_MAIN(tst_Signals)
#include "tst_signals.moc"
