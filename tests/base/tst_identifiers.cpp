// Identifiers and the stopwatch.
#include "app/base/CClock.h"
#include "app/base/Unique.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class TestIdentifiers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void identifiers()
    {
        static const QRegularExpression form(
            u"^[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}$"_s);
        QCOMPARE(Unique::toString(QUuid()), QString());
        QCOMPARE(Unique::toString(QUuid(u"{B78901E8-4787-4E9E-8977-F940608E4FB9}"_s)),
                 u"b78901e8-4787-4e9e-8977-f940608e4fb9"_s);
        QSet<QUuid> seen;
        for (int i = 0; i < 1000; ++i) {
            const QUuid id = Unique::generate();
            // A wrong byte order would put these elsewhere.
            QCOMPARE(id.version(), QUuid::Random);
            QCOMPARE(id.variant(), QUuid::DCE);
            QVERIFY(form.match(Unique::toString(id)).hasMatch());
            QCOMPARE(QUuid(Unique::toString(id)), id);
            seen.insert(id);
        }
        QCOMPARE(seen.size(), 1000);
    }

    void milliseconds_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<qint64>("nanoseconds");
        QTest::addColumn<qint64>("expected");
        const auto row = [](const char* name, qint64 seconds, qint64 nanoseconds, qint64 expected) {
            QTest::newRow(name) << seconds << nanoseconds << expected;
        };
        constexpr qint64 most = std::numeric_limits<qint32>::max();
        constexpr qint64 least = std::numeric_limits<qint32>::min();
        row("plain", 12, 345678901, 12345);
        row("truncated up", 1, -1999999, 999);
        row("truncated to zero", 0, -999999, 0);
        row("last before the wrap", 2147483, 647999999, most);
        row("first after the wrap", 2147483, 648000000, least);
        row("a year", 31536000, 0, 1471228928);
        row("backwards", -5, 250000000, -4750);
        row("lowest", -2147483, -648000000, least);
        row("below the lowest", -2147483, -649000000, most);
    }
    void milliseconds()
    {
        QFETCH(qint64, seconds);
        QFETCH(qint64, nanoseconds);
        QTEST(CClock::toMilliseconds(seconds, nanoseconds), "expected");
    }

    void stopwatch()
    {
        CClock clock;
        const qint64 start = clock.restart();
        qint64 last = 0;
        while (last < 20) {
            const qint64 now = clock.elapsed();
            QVERIFY(now >= last);
            last = now;
        }
        // The two truncate differently, by less than 2 ms in all.
        const qint64 sinceStart = clock.elapsed(start);
        QVERIFY(sinceStart >= last);
        QVERIFY(clock.elapsed() >= sinceStart - 2);

        const qint64 again = clock.restart();
        const qint64 sinceRestart = clock.elapsed();
        QVERIFY(sinceRestart <= clock.elapsed(again));
        QVERIFY(again - start >= last - 1);
    }
};

QTEST_APPLESS_MAIN(TestIdentifiers)
#include "tst_identifiers.moc"
