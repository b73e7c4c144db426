// The JSON codec: what it reads and refuses, what it writes, byte by byte.
#include "net/Json.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QPoint>
#include <QTest>
#include <QUrl>
#include <QUuid>

#include <limits>

using namespace Qt::StringLiterals;
using QtJson::Json;

namespace {

const QVariant invalid;

const auto i = [](qlonglong value) { return QVariant(value); };
const auto u = [](qulonglong value) { return QVariant(value); };
const auto v = [](const auto& value) { return QVariant::fromValue(value); };

/// Equal in type as well; QVariant compares numbers of any types by value.
bool same(const QVariant& a, const QVariant& b)
{
    if (a.typeId() != QMetaType::QVariantList || b.typeId() != QMetaType::QVariantList)
        return a.metaType() == b.metaType() && a == b;
    const QVariantList left = a.toList();
    const QVariantList right = b.toList();
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), same);
}

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
    void reads_data()
    {
        QTest::addColumn<QString>("json");
        QTest::addColumn<QVariant>("expected");
        const auto row = [](const char* name, const QString& json, const QVariant& expected) {
            QTest::newRow(name) << json << expected;
        };
        const auto list = [&row](const char* name, const QString& json, const QVariantList& items) {
            row(name, json, items);
        };
        row("null text", QString(), invalid);
        row("null", u"null"_s, invalid);
        row("empty array", u"[ ]"_s, QVariantList());
        row("empty object", u"{}"_s, QVariantMap());
        row("empty string", u"\"\""_s, u""_s);
        list("words", u"[true,false,null]"_s, {true, false, invalid});
        list("words run on", u"[truefalsenull]"_s, {true, false, invalid});
        row("word goes on", u"trueish"_s, true);
        row("text follows", u" 1 ]}x"_s, u(1));
        row("four blanks", u" \t\r\n\"x\""_s, u"x"_s);
        list("too many commas", u"[,1,,2,]"_s, {u(1), u(2)});
        list("no commas", u"[1 2\"a\"[]{}]"_s, {u(1), u(2), u"a"_s, QVariantList(), QVariantMap()});
        list("number types", u"[12,-12,-0.5e3,0,-0]"_s, {u(12), i(-12), -500.0, u(0), i(0)});
        list("number limits",
             u"[18446744073709551615,-9223372036854775808,1.7976931348623157E+308]"_s,
             {u(std::numeric_limits<qulonglong>::max()), i(std::numeric_limits<qlonglong>::min()),
              std::numeric_limits<double>::max()});
        list("beyond limits", u"[18446744073709551616,-9223372036854775809,1.0e309,-1.0e309]"_s,
             {u(0), i(0), 0.0, 0.0});
        list("damaged numbers", u"[1e5,-1e5,1-2,--1,-,1.2.3,1.e,-.]"_s,
             {u(0), i(0), u(0), i(0), i(0), 0.0, 0.0, 0.0});
        list("sloppy numbers", u"[1.,-.5,007,1.e2]"_s, {1.0, -0.5, u(7), 100.0});
        row("escapes", u"\"\\\"\\\\\\/\\b\\f\\n\\r\\t\""_s, u"\"\\/\b\f\n\r\t"_s);
        row("unknown escapes", u"\"a\\qb\\'\\Uc\""_s, u"abc"_s);
        row("code units", uR"("\u00e9\uD83D\uDE00\u0000x")"_s, u"é😀\0x"_s);
        row("no code units", uR"("\u+123\u 12\u12\u0x1F\u００００")"_s, u"\0\0u12\0\0"_s);
        row("raw characters", u"\"\n\t\x01é\""_s, u"\n\t\x01é"_s);
        row("object", u"{\"b\":1,\"a\":{\"\":null},}"_s,
            QVariantMap{{u"a"_s, QVariantMap{{u""_s, invalid}}}, {u"b"_s, u(1)}});
        row("key again", u"{\"a\":1,\"b\":2,\"a\":3}"_s,
            QVariantMap{{u"a"_s, u(3)}, {u"b"_s, u(2)}});
        row("key opened otherwise", u"{1a\":1[b\":2,\n:c\" : 3}"_s,
            QVariantMap{{u"a"_s, u(1)}, {u"b"_s, u(2)}, {u"c"_s, u(3)}});
    }
    void reads()
    {
        QFETCH(QString, json);
        QFETCH(QVariant, expected);
        bool success = false;
        const QVariant read = Json::parse(json, success);
        QVERIFY(success);
        QVERIFY2(same(read, expected), Json::serialize(read).constData());
        QCOMPARE(read.toString().isNull(), expected.toString().isNull());
        QVERIFY(same(Json::parse(json), expected));
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("json");
        for (const QString& json :
             {u""_s,          u" \n"_s,       u"[1,2"_s,       u"{\"a\":1,"_s,  u"{\"a\""_s,
              u"{\"a\" 1}"_s, u"{\"a\":}"_s,  u"{a\":1}"_s,    u"{\"a\":[1}"_s, u"[1}"_s,
              u"[:]"_s,       u"]"_s,         u","_s,          u"tru"_s,        u"True"_s,
              u"nul"_s,       u"[fals]"_s,    u"+1"_s,         u".5"_s,         u"\"abc"_s,
              u"\"abc\\"_s,   u"\"abc\\\""_s, u"\"\\u12\""_s,  u"\u00a01"_s,    u"\v1"_s,
              u"\ufeff1"_s,   u"[1,x]"_s,     u"{\"a\":1,x}"_s})
            QTest::newRow(qPrintable(json)) << json;
    }
    void refuses()
    {
        QFETCH(QString, json);
        bool success = true;
        QVERIFY(!Json::parse(json, success).isValid());
        QVERIFY(!success);
        QVERIFY(!Json::parse(json).isValid());
    }

    void depth_data()
    {
        QTest::addColumn<QString>("json");
        QTest::addColumn<bool>("fits");
        QTest::newRow("arrays") << nested(1000, 0) << true;
        QTest::newRow("an array too deep") << nested(1001, 0) << false;
        QTest::newRow("both") << nested(500, 500) << true;
        QTest::newRow("an object too deep") << nested(500, 501) << false;
        QTest::newRow("side by side") << u'[' + nested(999, 0).repeated(3) + u']' << true;
        QTest::newRow("bottomless") << u"[{1\":"_s.repeated(1'000'000) << false;
    }
    void depth()
    {
        QFETCH(QString, json);
        QFETCH(bool, fits);
        bool success = !fits;
        const QVariant read = Json::parse(json, success);
        QCOMPARE(success, fits);
        QCOMPARE(read.isValid(), fits);
    }

    void writes_data()
    {
        QTest::addColumn<QVariant>("data");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const QVariant& data, const QByteArray& expected) {
            QTest::newRow(name) << data << expected;
        };
        row("invalid", invalid, "null");
        row("null string", QString(), R"("")");
        row("bools", QVariantList{true, false}, "[ true, false ]");
        row("empty list", QVariantList(), "[  ]");
        row("empty map", QVariantMap(), "{  }");
        row("map", QVariantMap{{u"b"_s, 1}, {u"a"_s, QVariantMap{{u"/"_s, invalid}}}},
            R"({ "a" : { "/" : null }, "b" : 1 })");
        row("hash", QVariantHash{{u"é"_s, QVariantList{u"x"_s}}}, "{ \"é\" : [ \"x\" ] }");
        row("string list", QStringList{u"a"_s, QString(), u"\\"_s}, R"([ "a", "", "\\" ])");
        row("escapes", u"\\n\"/\b\f\n\r\t"_s, "\"\\\\n\\\"/\\b\\f\\n\\r\\t\"");
        row("raw characters", u"é😀\x01\x7f\0"_s, "\"é😀\x01\x7f\0\""_ba);
        row("digits", QVariantList{u"12"_s, QByteArray("12")}, R"([ "12", "12" ])");
        row("half a pair", QString(QChar(0xD800)), R"("?")");
        row("byte array", QByteArray("\"\xC3\xA9\xFF"), "\"\\\"\xC3\xA9\xEF\xBF\xBD\"");
        row("whole", QVariantList{2.0, 3.0, -1e19}, "[ 2.0, 3.0, -10000000000000000000.0 ]");
        row("doubles", QVariantList{0.1, -0.5, 1e-5},
            "[ 0.10000000000000000555, -0.5, 1.0000000000000000818e-05 ]");
        row("exponents", QVariantList{1e20, 1e25}, "[ 1e+20, 1.0000000000000000906e+25 ]");
        row("not finite", QVariantList{qInf(), -qInf(), qQNaN()}, "[ inf.0, -inf.0, nan.0 ]");
        row("integers", QVariantList{-1, 4294967295U, v(short(-2)), v(uchar(200))},
            "[ -1, 4294967295, -2, 200 ]");
        row("64 bits", QVariantList{u(~0ULL), v(~0UL), i(std::numeric_limits<qlonglong>::min())},
            "[ 18446744073709551615, 18446744073709551615, -9223372036854775808 ]");
        row("surprising", QVariantList{v('a'), QChar(u'a'), v(Qt::Key_A), 1.5F, -1.7F, v(nullptr)},
            R"([ 97, 97, 65, 2, -2, "" ])");
        row("identifier", QUuid(u"{12345678-1234-1234-1234-123456789abc}"_s),
            R"("{12345678-1234-1234-1234-123456789abc}")");
        row("address", QUrl(u"http://a.example/é?b"_s), "\"http://a.example/é?b\"");
        row("times",
            QVariantList{QDate(2024, 2, 3), QTime(1, 2), QDateTime({2024, 2, 3}, {1, 2}, Qt::UTC)},
            R"([ "2024-02-03", "01:02:00.000", "2024-02-03T01:02:00.000Z" ])");
        row("JSON values", QVariantList{QJsonValue(3), QJsonValue(u"x"_s)}, R"([ 3, "x" ])");
    }
    void writes()
    {
        QFETCH(QVariant, data);
        QFETCH(QByteArray, expected);
        QLocale::setDefault(QLocale(QLocale::German));
        bool success = false;
        QCOMPARE(Json::serialize(data, success), expected);
        QVERIFY(success);
        QCOMPARE(Json::serialize(data), expected);
    }

    void refusesToWrite()
    {
        const QVariant point = QPoint(1, 2);
        for (const QVariant& data : {point, v(QList<int>{1}), v(u'a'), v(QJsonValue(true)),
                                     QVariant(QVariantList{1, point, 2}),
                                     QVariant(QVariantMap{{u"a"_s, point}, {u"b"_s, 1}}),
                                     QVariant(QVariantHash{{u"a"_s, QVariantList{point}}})}) {
            bool success = true;
            QVERIFY2(Json::serialize(data, success).isNull(), data.typeName());
            QVERIFY(!success);
            QVERIFY(Json::serialize(data).isNull());
        }
    }

    void othersReadIt()
    {
        const QVariantMap data{{u"\"\\\n"_s, QVariantList{0.1, -1e25, 1e20, i(-(1LL << 62)), u(7)}},
                               {u"é😀"_s, QVariantList{true, u"\b\f\r\t/"_s, QVariantMap()}}};
        QJsonParseError error;
        const QByteArray text = Json::serialize(data);
        QCOMPARE(QJsonDocument::fromJson(text, &error).object(), QJsonObject::fromVariantMap(data));
        QCOMPARE(error.error, QJsonParseError::NoError);
    }
};

QTEST_APPLESS_MAIN(tst_Json)
#include "tst_json.moc"
