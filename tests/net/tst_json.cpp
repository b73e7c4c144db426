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
            {u"[1e5,-1e5,1-2,--1,-,1.2.3,1.e,-.]"_s, "[ 0, 0, 0, 0, 0, 0.0, 0.0, 0.0 ]"},
            {u"\"\n\t\x01é\\\"\\\\\\/\\b\\f\\n\\r\\t\""_s,
             "\"\\n\\t\x01é\\\"\\\\/\\b\\f\\n\\r\\t\""},
            {u"\"a\\qb\\'\\Uc\""_s, R"("abc")"},
            {uR"("\u00e9\uD83D\uDE00\u0000x")"_s, "\"é😀\0x\""_ba},
            {uR"("\u+123\u 12\u12\u0x1F\u００００")"_s, "\"\0\0u12\0\0\""_ba},
            {u"{\"b\":1,\"a\":{\"\":null},\"b\":2,}"_s, R"({ "a" : { "" : null }, "b" : 2 })"},
            {u"{1a\":1[b\":2,\n:c\" : 3}"_s, R"({ "a" : 1, "b" : 2, "c" : 3 })"},
        };
        for (const auto& [text, expected] : texts) {
            bool success = false;
            const QVariant value = Json::parse(text, success);
            QVERIFY2(success, qPrintable(text));
            QCOMPARE(Json::serialize(value), expected);
        }
        QVERIFY(Json::parse(nested(500, 500)).isValid());
        QCOMPARE(Json::parse(u"12"_s).typeId(), QMetaType::ULongLong);
        QCOMPARE(Json::parse(u"-12"_s).typeId(), QMetaType::LongLong);
        QVERIFY(!Json::parse(u"\"\""_s).toString().isNull());
    }

    void refuses()
    {
        const QStringList texts{
            u" \n"_s,      u"[1,2"_s,        u"{\"a\""_s,      u"{\"a\" 1}"_s,
            u"{\"a\":}"_s, u"[1}"_s,         u"[:]"_s,         u"tru"_s,
            u"True"_s,     u"+1"_s,          u".5"_s,          u"\"abc"_s,
            u"\"abc\\"_s,  u"\"\\u12\""_s,   u"\u00a01"_s,     u"\ufeff1"_s,
            u"[1,x]"_s,    u"{\"a\":1,x}"_s, nested(501, 500), u"[{1\":"_s.repeated(1'000'000)};
        for (const QString& text : texts) {
            bool success = true;
            const bool isValid = Json::parse(text, success).isValid();
            QVERIFY2(!success && !isValid, qPrintable(text.left(99)));
        }
    }

    void writes()
    {
        const QVariant point = QPoint(1, 2);
        const QList<std::pair<QVariant, QByteArray>> values{
            {QVariantHash{{u"é"_s, u"x"_s}}, "{ \"é\" : \"x\" }"},
            {QStringList{u"a"_s, QString(), u"12"_s}, R"([ "a", "", "12" ])"},
            {QVariantList{u"\x7f\0"_s, QString(QChar(0xD800)), QByteArray("\"\xC3\xA9\xFF")},
             "[ \"\x7f\0\", \"?\", \"\\\"\xC3\xA9\xEF\xBF\xBD\" ]"_ba},
            {QVariantList{2.0, -1e19, 0.1, 1e-5, 1e20, qInf(), -qInf(), qQNaN()},
             "[ 2.0, -10000000000000000000.0, 0.10000000000000000555, "
             "1.0000000000000000818e-05, 1e+20, inf.0, -inf.0, nan.0 ]"},
            {QVariantList{-1, QVariant::fromValue(uchar(200)), QVariant::fromValue(~0UL),
                          QChar(u'a'), 1.5F, QUrl(u"http://a.example/é?b"_s)},
             "[ -1, 200, 18446744073709551615, 97, 2, \"http://a.example/é?b\" ]"},
            {QVariantList{1, point, 2}, {}},
            {QVariantHash{{u"a"_s, QVariantMap{{u"b"_s, point}}}}, {}},
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
