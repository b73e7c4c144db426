// Version numbers: which texts are some, and which is the newer one.
#include "app/base/ProductHelper.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestProduct : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void versions()
    {
        for (const QString& text : {u""_s, u"..."_s, u"1.2.3.4"_s, u"1.2.3a"_s, u"2147483648"_s})
            QVERIFY2(!ProductVersion(text).isValid(), qPrintable(text));
        QCOMPARE(ProductVersion(u".010..2."_s).toString(), u"10.2.0"_s);
        const QList<ProductVersion> rising{ProductVersion(), {0, 0, 0},  {0, 0, 1},
                                           {0, 2, 608},      {0, 10, 0}, {1, 0, 0}};
        for (qsizetype i = 0; i < rising.size(); ++i) {
            for (qsizetype j = 0; j < rising.size(); ++j)
                QCOMPARE(rising.at(i) < rising.at(j), i < j);
        }
    }
};

QTEST_APPLESS_MAIN(TestProduct)
#include "tst_product.moc"
