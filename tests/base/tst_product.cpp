// Version numbers and the donation.
#include "app/base/ProductHelper.h"
#include "app/base/Prompt.h"

#include <QDesktopServices>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class TestProduct : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl& url) { m_opened = url; }

private Q_SLOTS:
    void parse_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        for (const QString& text : {u""_s, u"..."_s, u"1.2.3.4"_s, u"1.x"_s, u"1.2.3a"_s, u"0x1"_s,
                                    u"1 2"_s, u"2147483648"_s, u"1.2.3-beta"_s})
            QTest::newRow(qPrintable(u"invalid "_s + text)) << text << u"-1.-1.-1"_s;
        QTest::newRow("one number") << u"1"_s << u"1.0.0"_s;
        QTest::newRow("two numbers") << u"1.2"_s << u"1.2.0"_s;
        QTest::newRow("three numbers") << u"0.2.608"_s << u"0.2.608"_s;
        QTest::newRow("empty parts") << u".1..2.3."_s << u"1.2.3"_s;
        QTest::newRow("leading zeros") << u"010.08"_s << u"10.8.0"_s;
        QTest::newRow("negative") << u"1.-2"_s << u"1.-2.0"_s;
        QTest::newRow("largest") << u"2147483647"_s << u"2147483647.0.0"_s;
    }
    void parse()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        const ProductVersion version(text);
        QCOMPARE(version.toString(), expected);
        QCOMPARE(version.isValid(), !expected.contains(u'-'));
    }

    void order()
    {
        const QList<ProductVersion> rising{ProductVersion(), {0, 0, 0}, {0, 0, 1}, {0, 2, 608},
                                           {0, 10, 0},       {1, 0, 0}, {1, 0, 5}};
        for (qsizetype i = 0; i < rising.size(); ++i) {
            for (qsizetype j = 0; j < rising.size(); ++j)
                QCOMPARE(rising.at(i) < rising.at(j), i < j);
        }
    }

    void donate()
    {
        QList<Prompt::Question> asked;
        Prompt::setAnswerer([&asked](const Prompt::Question& question) {
            asked << question;
            return QMessageBox::Ok;
        });
        QDesktopServices::setUrlHandler(u"https"_s, this, "open");
        ProductHelper::donate(nullptr);
        QCOMPARE(m_opened, QUrl(ProductHelper::donateUrl()));
        QCOMPARE(asked.size(), 0);

        // Without a browser the user gets the address to copy.
        QDesktopServices::setUrlHandler(u"https"_s, this, "noSuchSlot");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"noSuchSlot"_s));
        ProductHelper::donate(nullptr);
        QDesktopServices::unsetUrlHandler(u"https"_s);
        Prompt::setAnswerer({});
        QCOMPARE(asked.size(), 1);
        QVERIFY(asked.first().text.contains(ProductHelper::donateUrl()));
    }

private:
    QUrl m_opened;
};

QTEST_MAIN(TestProduct)
#include "tst_product.moc"
