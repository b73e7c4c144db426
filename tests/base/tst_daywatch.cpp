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

private Q_SLOTS:
    void cleanup() { Clock::release(); }

    void tells_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::newRow("Europe/Berlin") << u"2026-03-10"_s << u"2026-03-11T00:00:00"_s;
        QTest::newRow("UTC") << u"2026-03-10"_s << u"2026-02-28T12:00:00"_s;
        // A day without midnight.
        QTest::newRow("America/Sao_Paulo") << u"2017-10-14"_s << u"2017-10-15T01:00:00"_s;
    }
    void tells()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        qputenv("TZ", QTest::currentDataTag());
        ::tzset();
        Clock::freeze(QDateTime::fromString(before + u"T23:59:59.960"_s, Qt::ISODateWithMs));
        const DayWatch watch;
        QSignalSpy changes(&watch, &DayWatch::dayChanged);
        QSignalSpy wakeUps(watch.findChild<QSocketNotifier*>(), &QSocketNotifier::activated);

        // Woken on the same day, it keeps quiet and sets its timer anew.
        QTRY_VERIFY(wakeUps.count() >= 2);
        QCOMPARE(changes.count(), 0);

        Clock::freeze(QDateTime::fromString(after, Qt::ISODate));
        QTRY_COMPARE(changes.count(), 1);
        // The end of the new day is far off.
        wakeUps.clear();
        QCoreApplication::processEvents();
        QCOMPARE(wakeUps.count(), 0);
    }
};

QTEST_GUILESS_MAIN(DayWatchTest)
#include "tst_daywatch.moc"
