// The JSON codec: what it reads and refuses, what it writes, byte by byte.
#include "net/Json.h"

#include <QLocale>
#include <QPoint>
#include <QTest>
#include <QUrl>

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

bool parses(const QString& json)
{
    bool success = false;
    const bool isValid = Json::parse(json, success).isValid();
    return success && isValid;
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
        row("empty string", u"\"\""_s, u""_s);
        row("text follows", u" \t\r\n1 ]}x"_s, u(1));
        list("words run on", u"[truefalsenull]"_s, {true, false, invalid});
        list("commas", u"[,1 2,,\"a\"[]{},]"_s,
             {u(1), u(2), u"a"_s, QVariantList(), QVariantMap()});
        list("numbers", u"[12,-12,-0.5e3,0,-0,1.,-.5,007,1.e2]"_s,
             {u(12), i(-12), -500.0, u(0), i(0), 1.0, -0.5, u(7), 100.0});
        list("number limits",
             u"[18446744073709551615,18446744073709551616,-9223372036854775808,"
             "-9223372036854775809,1.7976931348623157E+308,1.0e309]"_s,
             {u(std::numeric_limits<qulonglong>::max()), u(0),
              i(std::numeric_limits<qlonglong>::min()), i(0), std::numeric_limits<double>::max(),
              0.0});
        list("damaged numbers", u"[1e5,-1e5,1-2,--1,-,1.2.3,1.e,-.]"_s,
             {u(0), i(0), u(0), i(0), i(0), 0.0, 0.0, 0.0});
        row("escapes", u"\"\n\t\x01é\\\"\\\\\\/\\b\\f\\n\\r\\t\""_s, u"\n\t\x01é\"\\/\b\f\n\r\t"_s);
        row("unknown escapes", u"\"a\\qb\\'\\Uc\""_s, u"abc"_s);
        row("code units", uR"("\u00e9\uD83D\uDE00\u0000x")"_s, u"é😀\0x"_s);
        row("no code units", uR"("\u+123\u 12\u12\u0x1F\u００００")"_s, u"\0\0u12\0\0"_s);
        row("object", u"{\"b\":1,\"a\":{\"\":null},\"b\":2,}"_s,
            QVariantMap{{u"a"_s, QVariantMap{{u""_s, invalid}}}, {u"b"_s, u(2)}});
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
    }

    void refuses()
    {
        for (const QString& json :
             {u" \n"_s, u"[1,2"_s, u"{\"a\""_s, u"{\"a\" 1}"_s, u"{\"a\":}"_s, u"[1}"_s, u"[:]"_s,
              u"tru"_s, u"True"_s, u"+1"_s, u".5"_s, u"\"abc"_s, u"\"abc\\"_s, u"\"\\u12\""_s,
              u"\u00a01"_s, u"\ufeff1"_s, u"[1,x]"_s, u"{\"a\":1,x}"_s}) {
            bool success = true;
            QVERIFY2(!Json::parse(json, success).isValid(), qPrintable(json));
            QVERIFY2(!success, qPrintable(json));
        }
    }

    void depth()
    {
        QVERIFY(parses(nested(500, 500)));
        QVERIFY(parses(u'[' + nested(999, 0).repeated(3) + u']'));
        QVERIFY(!parses(nested(501, 500)));
        QVERIFY(!parses(nested(500, 501)));
        QVERIFY(!parses(u"[{1\":"_s.repeated(1'000'000)));
    }

    void writes_data()
    {
        QTest::addColumn<QVariant>("data");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const QVariant& data, const QByteArray& expected) {
            QTest::newRow(name) << data << expected;
        };
        row("list", QVariantList{invalid, true, false, QVariantList(), QVariantMap()},
            "[ null, true, false, [  ], {  } ]");
        row("map", QVariantMap{{u"b"_s, 1}, {u"a"_s, QVariantMap{{u"/"_s, invalid}}}},
            R"({ "a" : { "/" : null }, "b" : 1 })");
        row("hash", QVariantHash{{u"é"_s, u"x"_s}}, "{ \"é\" : \"x\" }");
        row("string list", QStringList{u"a"_s, QString(), u"12"_s}, R"([ "a", "", "12" ])");
        row("escapes", u"\\n\"/\b\f\n\r\t"_s, "\"\\\\n\\\"/\\b\\f\\n\\r\\t\"");
        row("raw characters",
            QVariantList{u"é😀\x01\x7f\0"_s, QString(QChar(0xD800)), QByteArray("\"\xC3\xA9\xFF")},
            "[ \"é😀\x01\x7f\0\", \"?\", \"\\\"\xC3\xA9\xEF\xBF\xBD\" ]"_ba);
        row("doubles", QVariantList{2.0, -1e19, 0.1, -0.5, 1e-5, 1e20},
            "[ 2.0, -10000000000000000000.0, 0.10000000000000000555, -0.5, "
            "1.0000000000000000818e-05, 1e+20 ]");
        row("not finite", QVariantList{qInf(), -qInf(), qQNaN()}, "[ inf.0, -inf.0, nan.0 ]");
        row("integers", QVariantList{-1, v(uchar(200)), u(~0ULL), v(~0UL), i(-(1LL << 62))},
            "[ -1, 200, 18446744073709551615, 18446744073709551615, -4611686018427387904 ]");
        row("converted", QVariantList{v('a'), QChar(u'a'), 1.5F, QUrl(u"http://a.example/é?b"_s)},
            "[ 97, 97, 2, \"http://a.example/é?b\" ]");
        const QVariant point = QPoint(1, 2);
        row("no JSON", point, {});
        row("no JSON in a list", QVariantList{1, point, 2}, {});
        row("no JSON in a map", QVariantMap{{u"a"_s, point}, {u"b"_s, 1}}, {});
        row("no JSON in a hash", QVariantHash{{u"a"_s, QVariantList{point}}}, {});
    }
    void writes()
    {
        QFETCH(QVariant, data);
        QFETCH(QByteArray, expected);
        QLocale::setDefault(QLocale(QLocale::German));
        bool success = expected.isNull();
        const QByteArray written = Json::serialize(data, success);
        QCOMPARE(written, expected);
        QCOMPARE(written.isNull(), expected.isNull());
        QCOMPARE(success, !expected.isNull());
    }
};

QTEST_APPLESS_MAIN(tst_Json)
#include "tst_json.moc"
