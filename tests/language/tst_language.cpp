// The languages that are offered, and the switch between them while a dialog is open.
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/language/Language.h"
#include "app/language/LocalizedDialog.h"
#include "app/language/LocalizedWidget.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString inbox()
{
    return QCoreApplication::translate("IconsHelper", "Inbox");
}

template <typename Base>
class Localized : public Base
{
public:
    using Base::Base;
    void retranslateUI() override
    {
        // Dates follow together with the texts.
        this->setWindowTitle(inbox() + u' ' + QLocale().standaloneDayName(1));
    }
};

} // namespace

class tst_Language : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        initLanguages();
        QVERIFY(Language::language().isEmpty());
    }

    void cleanup()
    {
        dynamic_singleton<ProgramSettings>::destroy();
        dynamic_singleton<Language>::destroy();
        QLocale::setDefault(QLocale::c());
        QCOMPARE(inbox(), u"Inbox"_s);
    }

    void offered()
    {
        QCOMPARE(Language::availableLanguages(),
                 QStringList({u"en_US"_s, u"de"_s, u"fr_FR"_s, u"ru_RU"_s}));
        QVERIFY2(!Language::isValidLocale(u"nowhere"_s), "a catalogue, but no such locale");
        QVERIFY(Language::isValidLocale(u"de_AT"_s));
        Language::SLanguage files;
        QVERIFY(!Language::locale2FileInfo(u"it_IT"_s, files));
        QCOMPARE(files.program.filePath(), u":/Language/it/translation"_s);
        QCOMPARE(files.qt.filePath(), u":/Language/it_IT/qt_translation"_s);
    }

    void set_data()
    {
        QTest::addColumn<QString>("localeId");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("locale");
        const QString from = u"ru_RU"_s;
        QTest::newRow("English") << u"en_US"_s << u"en_US"_s << u"Inbox"_s << u"en_US"_s;
        QTest::newRow("other English") << u"en_GB"_s << u"en_GB"_s << u"Inbox"_s << u"en_GB"_s;
        QTest::newRow("by language") << u"de_AT"_s << u"de_AT"_s << u"Eingang"_s << u"de_AT"_s;
        QTest::newRow("damaged") << u"fr_FR"_s << from << u"Входящие"_s << from;
        QTest::newRow("only Qt's") << u"it_IT"_s << from << u"Входящие"_s << from;
        QTest::newRow("unknown") << u"tlh"_s << from << u"Входящие"_s << from;
        QTest::newRow("empty") << QString() << from << u"Входящие"_s << from;
    }
    void set()
    {
        QFETCH(QString, localeId);
        QFETCH(QString, language);
        QVERIFY(Language::setLanguage(u"ru_RU"_s));
        QCOMPARE(Language::setLanguage(localeId), language == localeId);
        QCOMPARE(Language::language(), language);
        QTEST(inbox(), "text");
        QTEST(QLocale().name(), "locale");
    }

    void openDialog()
    {
        Localized<LocalizedDialog> dialog;
        Localized<LocalizedWidget> inside(&dialog);
        QDialogButtonBox buttons(QDialogButtonBox::Cancel, &dialog);
        const auto shown = [&] {
            return QStringList{dialog.windowTitle(), inside.windowTitle(),
                               buttons.button(QDialogButtonBox::Cancel)->text()};
        };
        dialog.retranslateUI();
        inside.retranslateUI();
        dialog.show();
        const QStringList english = shown();
        QCOMPARE(english, QStringList({u"Inbox Monday"_s, u"Inbox Monday"_s, u"Cancel"_s}));

        QVERIFY(Language::setLanguage(u"ru_RU"_s));
        const QString russian = u"Входящие понедельник"_s;
        QTRY_COMPARE(shown(), QStringList({russian, russian, u"Отмена"_s}));
        QVERIFY(Language::setLanguage(u"de_DE"_s));
        QTRY_COMPARE(dialog.windowTitle(), u"Eingang Montag"_s);
        QVERIFY2(shown().last().contains("Cancel"_L1), "Qt's other language has gone too");
        QVERIFY(Language::setLanguage(u"en_US"_s));
        QTRY_COMPARE(shown(), english);
    }

    void settings()
    {
        QString& chosen = dynamic_singleton<ProgramSettings>::inst().uiLanguage;
        QVERIFY(chosen.isEmpty());
        Language::loadLanguageSettings();
        QCOMPARE(Language::language(), QString());

        chosen = u"xx_XX"_s;
        Language::loadLanguageSettings();
        QCOMPARE(Language::language(), QString());
        QCOMPARE(chosen, u"xx_XX"_s);

        chosen = u"ru_RU"_s;
        Language::loadLanguageSettings();
        QCOMPARE(Language::language(), u"ru_RU"_s);
        Language::setLanguage(u"en_US"_s);
        Language::saveLanguageSettings();
        QCOMPARE(chosen, u"en_US"_s);
    }
};

QTEST_MAIN(tst_Language)
#include "tst_language.moc"
