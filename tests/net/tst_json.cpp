// The JSON codec: what it reads and refuses, what it writes, byte by byte.
#include "net/Json.h"

#include <QLocale>
#include <QPoint>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;
using QtJson::Json;

namespace {
QString nested(int arrays, int objects)
{
    return u"["_s.repeated(arrays) + u"{\"\":"_s.repeated(objects) + u'1' +
           u"}"_s.repeated(objects) + u"]"_s.repeated(arrays);
}
} // namespace

class tst_Json : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German)); }

    void reads()
    {
        // What it reads, and what it writes of that.
        const QList<std::pair<QString, QByteArray>> texts{
            {QString(), "null"},
            {u"\"\""_s, R"("")"},
            {u" \t\r\n1 ]}x"_s, "1"},
            {u"[truefalsenull]"_s, "[ true, false, null ]"},
            {u"[,1 2,,\"a\"[]{},]"_s, R"([ 1, 2, "a", [  ], {  } ])"},
            {u"[12,-12,-0.5e3,0,-0,1.,-.5,007,1.e2]"_s,
             "[ 12, -12, -500.0, 0, 0, 1.0, -0.5, 7, 100.0 ]"},
            {u"[18446744073709551615,18446744073709551616,-9223372036854775808,"
             "-9223372036854775809,0.5E+1,1.0e309]"_s,
             "[ 18446744073709551615, 0, -9223372036854775808, 0, 5.0, 0.0 ]"},
            {u"\"\n\t\x01é\\\"\\\\\\/\\b\\f\\n\\r\\t\""_s,
             "\"\\n\\t\x01é\\\"\\\\/\\b\\f\\n\\r\\t\""},
            {uR"("\u00e9\uD83D\uDE00\u0000x")"_s, "\"é😀\0x\""_ba},
            {u"{\"b\":1,\"a\":{\"\":null},\"b\":2,}"_s, R"({ "a" : { "" : null }, "b" : 2 })"},
        };
        for (const auto& [text, expected] : texts) {
            bool success = false;
            const QVariant value = Json::parse(text, success);
            QVERIFY2(success, qPrintable(text));
            QCOMPARE(Json::serialize(value), expected);
        }
        QVERIFY(Json::parse(nested(500, 500)).isValid());
        QCOMPARE(Json::parse(u"12"_s).typeId(), QMetaType::ULongLong);
    }

    void refuses()
    {
        const QStringList texts{u" \n"_s,         u"[1,2"_s,
                                u"{\"a\":}"_s,    u"[1}"_s,
                                u"tru"_s,         u"\"abc\\"_s,
                                u"\"\\u12\""_s,   u"\ufeff1"_s,
                                nested(501, 500), u"[{1\":"_s.repeated(1'000'000)};
        for (const QString& text : texts) {
            bool success = true;
            const bool isValid = Json::parse(text, success).isValid();
            QVERIFY2(!success && !isValid, qPrintable(text.left(99)));
        }
    }

    void writes()
    {
        const QList<std::pair<QVariant, QByteArray>> values{
            {QVariantHash{{u"é"_s, QStringList{u"a"_s, QString()}}}, R"({ "é" : [ "a", "" ] })"},
            {QVariantList{2.0, -1e19, 0.1, 1e20, -1, ~0ULL, QUrl(u"http://a.example/é?b"_s)},
             "[ 2.0, -10000000000000000000.0, 0.10000000000000000555, 1e+20, -1, "
             "18446744073709551615, \"http://a.example/é?b\" ]"},
            {QVariantHash{{u"a"_s, QVariantMap{{u"b"_s, QPoint(1, 2)}}}}, {}},
        };
        for (const auto& [value, expected] : values) {
            bool success = expected.isNull();
            const QByteArray written = Json::serialize(value, success);
            QCOMPARE(written, expected);
            QCOMPARE(written.isNull(), expected.isNull());
            QCOMPARE(success, !expected.isNull());
        }
    }
};

QTEST_APPLESS_MAIN(tst_Json)
#include "tst_json.moc"
