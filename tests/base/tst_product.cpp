// Product facts, version numbers and the donation.
#include "app/base/ProductHelper.h"
#include "app/base/Prompt.h"

#include <QDesktopServices>
#include <QTest>
#include <QUrl>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Takes the place of the desktop's browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    explicit Browser(const char* slot) { QDesktopServices::setUrlHandler(u"https"_s, this, slot); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(u"https"_s); }
    Q_DISABLE_COPY_MOVE(Browser)

    QUrl opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened = url; }
};

} // namespace

class TestProduct : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Prompt::setAnswerer({}); }

    void parse_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const QString unknown = u"-1.-1.-1"_s;
        for (const QString& text :
             {u""_s, u"."_s, u"..."_s, u"1.2.3.4"_s, u"1.x"_s, u"x"_s, u"1.2.3a"_s, u"0x1"_s,
              u"1,2"_s, u"1 2"_s, u"2147483648"_s, u"1.2.99999999999"_s, u"1.2.3-beta"_s})
            QTest::newRow(qPrintable(u"invalid "_s + text)) << text << unknown;
        const auto row = [](const char16_t* text, const char16_t* expected) {
            const QString given = QString::fromUtf16(text);
            QTest::newRow(qPrintable(given)) << given << QString::fromUtf16(expected);
        };
        row(u"1", u"1.0.0");
        row(u"1.2", u"1.2.0");
        row(u"0.2.608", u"0.2.608");
        row(u"1..2", u"1.2.0");
        row(u".1.2.3.", u"1.2.3");
        row(u"010.08", u"10.8.0");
        row(u"1.-2", u"1.-2.0");
        row(u"2147483647", u"2147483647.0.0");
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

    void facts()
    {
        QCOMPARE(ProductHelper::companyName(), u"Quendel"_s);
        QCOMPARE(ProductHelper::productName(), u"Mivora"_s);
        QCOMPARE(ProductHelper::productDisplayName(), u"Mivora"_s);
        QCOMPARE(ProductHelper::productUninstallKey(), u"C8F31CA0-0667-467c-B205-B0A0291603E6"_s);
        QCOMPARE(ProductHelper::productVersion().toString(), u"0.2.608"_s);
        QVERIFY(!ProductHelper::donationEnabled());
        // Whatever a packager sets, the dialogs and the update check rely on these forms.
        QVERIFY(ProductHelper::productUrl().startsWith(u"http://"));
        QVERIFY(ProductHelper::donateUrl().startsWith(u"https://"));
        QVERIFY(QUrl(u"https://"_s + ProductHelper::serviceHost()).host() ==
                ProductHelper::serviceHost());
        QVERIFY(ProductHelper::productId().count(u'.') >= 2);
    }

    void latestVersion()
    {
        QVERIFY(!ProductHelper::latestProductVersion().isValid());
        ProductHelper::setLatestProductVersion({1, 2, 3});
        QCOMPARE(ProductHelper::latestProductVersion().toString(), u"1.2.3"_s);
        ProductHelper::setLatestProductVersion({});
    }

    void donate()
    {
        const Browser browser("open");
        bool asked = false;
        Prompt::setAnswerer([&asked](const Prompt::Question&) {
            asked = true;
            return QMessageBox::Ok;
        });
        ProductHelper::donate(nullptr);
        QCOMPARE(browser.opened, QUrl(ProductHelper::donateUrl()));
        QVERIFY(!asked);
    }
    void donateWithoutBrowser()
    {
        const Browser browser("noSuchSlot");
        std::optional<Prompt::Question> question;
        Prompt::setAnswerer([&question](const Prompt::Question& asked) {
            question = asked;
            return QMessageBox::Ok;
        });
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"noSuchSlot"_s));
        ProductHelper::donate(nullptr);
        QVERIFY(question);
        QCOMPARE(question->icon, QMessageBox::Information);
        QCOMPARE(question->title, u"Donate"_s);
        QCOMPARE(question->text,
                 u"<p>If you fell like you are ready to support Quendel, please do!<br/><br/>"
                 "<a href=\"%1\">%1</a></p>"_s.arg(ProductHelper::donateUrl()));
        QCOMPARE(question->buttons, QMessageBox::Ok);
        QCOMPARE(question->format, Qt::RichText);
    }
};

QTEST_MAIN(TestProduct)
#include "tst_product.moc"
