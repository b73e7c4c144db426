// Identifiers and the stopwatch.
#include "app/base/CClock.h"
#include "app/base/Unique.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class TestIdentifiers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void identifiers()
    {
        QCOMPARE(Unique::toString(QUuid()), QString());
        QCOMPARE(Unique::toString(QUuid(u"{B78901E8-4787-4E9E-8977-F940608E4FB9}"_s)),
                 u"b78901e8-4787-4e9e-8977-f940608e4fb9"_s);
        const QUuid id = Unique::generate();
        QVERIFY(id != Unique::generate());
        QCOMPARE(QUuid(Unique::toString(id)), id);
        // A wrong byte order would put these elsewhere.
        QCOMPARE(id.version(), QUuid::Random);
        QCOMPARE(id.variant(), QUuid::DCE);
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
        row("truncated to zero", 0, -999999, 0);
        row("last before the wrap", 2147483, 647999999, most);
        row("first after the wrap", 2147483, 648000000, least);
        row("a year", 31536000, 0, 1471228928);
        row("backwards", -5, 250000000, -4750);
    }
    void milliseconds()
    {
        QFETCH(qint64, seconds);
        QFETCH(qint64, nanoseconds);
        QTEST(CClock::toMilliseconds(seconds, nanoseconds), "expected");
    }
};

QTEST_APPLESS_MAIN(TestIdentifiers)
#include "tst_identifiers.moc"
