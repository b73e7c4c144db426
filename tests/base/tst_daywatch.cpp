// The watch that notices another day.

#include "app/base/Clock.h"
#include "app/base/DayWatch.h"

#include <QSignalSpy>
#include <QSocketNotifier>
#include <QTest>

#include <ctime>

using namespace Qt::StringLiterals;

class DayWatchTest : public QObject
{
    Q_OBJECT

private:
    static QDateTime moment(const QString& text)
    {
        return QDateTime::fromString(text, Qt::ISODateWithMs);
    }

    static void setZone(const QByteArray& zone)
    {
        qputenv("TZ", zone);
        ::tzset();
    }

private Q_SLOTS:
    static void cleanup()
    {
        Clock::release();
        setZone("Europe/Berlin");
    }

    void tells_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        const QByteArray berlin = "Europe/Berlin";
        QTest::newRow("midnight") << berlin << u"2026-03-10T23:59:59.960"_s
                                  << u"2026-03-11T00:00:00"_s;
        QTest::newRow("slept for days")
            << berlin << u"2026-03-10T23:59:59.960"_s << u"2026-03-14T08:00:00"_s;
        QTest::newRow("clock set back")
            << berlin << u"2026-03-10T23:59:59.960"_s << u"2026-02-28T12:00:00"_s;
        QTest::newRow("a day without midnight")
            << QByteArray("America/Sao_Paulo") << u"2017-10-14T23:59:59.960"_s
            << u"2017-10-15T01:00:00"_s;
    }
    void tells()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, before);
        QFETCH(QString, after);
        setZone(zone);
        Clock::freeze(moment(before));
        DayWatch watch;
        QSignalSpy changes(&watch, &DayWatch::dayChanged);
        int wakeUps = 0;
        connect(watch.findChild<QSocketNotifier*>(), &QSocketNotifier::activated, &watch,
                [&wakeUps] { ++wakeUps; });

        // Woken on the same day, it keeps quiet and sets its timer anew.
        QTRY_VERIFY(wakeUps >= 2);
        QCOMPARE(changes.count(), 0);

        Clock::freeze(moment(after));
        QTRY_COMPARE(changes.count(), 1);
        // The end of the new day is far off.
        const int lastWakeUp = wakeUps;
        QCoreApplication::processEvents();
        QCOMPARE(wakeUps, lastWakeUp);
    }
};

QTEST_GUILESS_MAIN(DayWatchTest)
#include "tst_daywatch.moc"
