// The languages that are offered, and the switch between them while a dialog is open.
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/language/Language.h"
#include "app/language/LocalizedDialog.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

class Titled : public LocalizedDialog
{
public:
    void retranslateUI() override
    {
        // Dates follow together with the texts.
        setWindowTitle(QCoreApplication::translate("IconsHelper", "Inbox") + u' ' +
                       QLocale().standaloneDayName(1));
    }
};

class tst_Language : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { initLanguages(); }

    void cleanup() { dynamic_singleton<Language>::destroy(); }

    void fallback()
    {
        QCOMPARE(Language::availableLanguages(),
                 QStringList({u"en_US"_s, u"de"_s, u"fr_FR"_s, u"ru_RU"_s}));
        dynamic_singleton<ProgramSettings>::inst().uiLanguage = u"ru_RU"_s;
        // Without a catalogue, by that of the language, damaged.
        for (const auto& [wanted, language, text] : {std::tuple(u"en_GB"_s, u"en_GB"_s, u"Inbox"_s),
                                                     {u"de_AT"_s, u"de_AT"_s, u"Eingang"_s},
                                                     {u"fr_FR"_s, u"ru_RU"_s, u"Входящие"_s}}) {
            Language::loadLanguageSettings();
            QCOMPARE(Language::setLanguage(wanted), language == wanted);
            QCOMPARE(Language::language(), language);
            QCOMPARE(QCoreApplication::translate("IconsHelper", "Inbox"), text);
            QCOMPARE(QLocale().name(), language);
        }
    }

    void openDialogFollows()
    {
        Titled dialog;
        QDialogButtonBox buttons(&dialog);
        const QPushButton* cancel = buttons.addButton(QDialogButtonBox::Cancel);
        dialog.show();
        QVERIFY(Language::setLanguage(u"ru_RU"_s));
        QTRY_COMPARE(dialog.windowTitle(), u"Входящие понедельник"_s);
        QTRY_COMPARE(cancel->text(), u"Отмена"_s);
        QVERIFY(Language::setLanguage(u"de_DE"_s));
        QTRY_COMPARE(dialog.windowTitle(), u"Eingang Montag"_s);
        QVERIFY2(cancel->text().contains("Cancel"_L1), "Qt's other language has gone too");
    }
};

QTEST_MAIN(tst_Language)
#include "tst_language.moc"
