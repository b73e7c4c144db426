// Texts of XML elements as the program's readers take them, and their failures in the log.
#include "app/base/BasicXmlReader.h"
#include "tests/support/LogWatch.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

class Reader : public BasicXmlReader
{
public:
    using BasicXmlReader::_readNextText;
};

QString body(const QString& inner)
{
    return u"<r><t>"_s + inner + u"</t><after/></r>"_s;
}

} // namespace

class TestBasicXmlReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_data()
    {
        QTest::addColumn<QString>("inner");
        QTest::addColumn<QString>("expected");
        // Longer than the reader's own buffer, with a reference that splits it.
        const QString half(2'500'000, u'ж');
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("references") << u" a&amp;&#x42;&lt; "_s << u" a&B< "_s;
        QTest::newRow("CDATA") << u"a<![CDATA[<b>&amp;]]>c<![CDATA[]]>"_s << u"a<b>&amp;c"_s;
        QTest::newRow("comments") << u"<!--x-->a<!-- <b> -->b<!--y-->"_s << u"ab"_s;
        QTest::newRow("line ends") << u"a\r\nb\rc\n"_s << u"a\nb\nc\n"_s;
        QTest::newRow("10 MB") << half + u"&gt;<![CDATA[x]]>"_s + half << half + u">x"_s + half;
    }
    void text()
    {
        QFETCH(QString, inner);
        QFETCH(QString, expected);
        LogWatch log;
        QByteArray bytes = body(inner).toUtf8();
        QBuffer device(&bytes);
        QVERIFY(device.open(QIODevice::ReadOnly));
        Reader reader;
        reader.setDevice(&device);
        QVERIFY(reader.readNextStartElement() && reader.readNextStartElement());
        QString text = u"what was there before"_s;
        QVERIFY(reader._readNextText(text));
        QVERIFY(text == expected);
        // The element's end is consumed, and no more.
        QVERIFY(reader.isEndElement());
        QVERIFY(reader.readNextStartElement());
        QCOMPARE(reader.name(), u"after"_s);
        QCOMPARE(log.take(), QStringList());
    }

    void noText()
    {
        // Malformed documents fail by themselves; their readers say so at the end.
        for (const QString& inner : {u"a<b>c</b>"_s, u"a&nope;b"_s, u"a<![CDATA[b"_s}) {
            LogWatch log;
            Reader reader;
            reader.addData(body(inner));
            QVERIFY(reader.readNextStartElement() && reader.readNextStartElement());
            QString text;
            QVERIFY(!reader._readNextText(text));
            QVERIFY(reader.hasError());
            QVERIFY(!reader._readNextText(text));
            QCOMPARE(log.take().size(), inner.contains(u"<b>") ? 1 : 0);
        }
    }
};

QTEST_APPLESS_MAIN(TestBasicXmlReader)
#include "tst_basicxmlreader.moc"
