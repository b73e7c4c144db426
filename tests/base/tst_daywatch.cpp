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
    static void freeze(const QString& moment)
    {
        Clock::freeze(QDateTime::fromString(moment, Qt::ISODateWithMs));
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
        const auto row = [](const char* name, const QByteArray& zone, const QString& before,
                            const QString& after) {
            QTest::newRow(name) << zone << before + u"T23:59:59.960"_s << after;
        };
        row("midnight", "Europe/Berlin", u"2026-03-10"_s, u"2026-03-11T00:00:00"_s);
        row("clock set back", "Europe/Berlin", u"2026-03-10"_s, u"2026-02-28T12:00:00"_s);
        row("a day without midnight", "America/Sao_Paulo", u"2017-10-14"_s,
            u"2017-10-15T01:00:00"_s);
    }
    void tells()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, before);
        QFETCH(QString, after);
        setZone(zone);
        freeze(before);
        DayWatch watch;
        QSignalSpy changes(&watch, &DayWatch::dayChanged);
        int wakeUps = 0;
        connect(watch.findChild<QSocketNotifier*>(), &QSocketNotifier::activated, &watch,
                [&wakeUps] { ++wakeUps; });

        // Woken on the same day, it keeps quiet and sets its timer anew.
        QTRY_VERIFY(wakeUps >= 2);
        QCOMPARE(changes.count(), 0);

        freeze(after);
        QTRY_COMPARE(changes.count(), 1);
        // The end of the new day is far off.
        const int lastWakeUp = wakeUps;
        QCoreApplication::processEvents();
        QCOMPARE(wakeUps, lastWakeUp);
    }
};

QTEST_GUILESS_MAIN(DayWatchTest)
#include "tst_daywatch.moc"
