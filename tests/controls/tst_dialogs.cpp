// The preferences, the about box and the licence.
#include "app/base/PathHelper.h"
#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/language/Language.h"
#include "tests/support/TemporaryHome.h"
#include "ui/controls/AboutDialog.h"
#include "ui/controls/EulaDialog.h"
#include "ui/controls/LinkLabel.h"
#include "ui/controls/PrefsDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QTest>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace {
ProgramSettings& settings()
{
    return dynamic_singleton<ProgramSettings>::inst();
}
} // namespace

class tst_Dialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { initLanguages(); }
    void cleanup()
    {
        Language::setLanguage(u"en_US"_s);
        ProductHelper::setLatestProductVersion({});
        dynamic_singleton<ProgramSettings>::destroy();
        QFile::remove(PathHelper::settingsFile());
    }

    void preferences()
    {
        settings().openWindowOnStartup = false;
        auto dialog = std::make_unique<PrefsDialog>();
        dialog.reset();
        QVERIFY2(!QFile::exists(PathHelper::settingsFile()), "nothing was touched");

        dialog = std::make_unique<PrefsDialog>();
        const QList<QCheckBox*> boxes = dialog->findChildren<QCheckBox*>();
        QVERIFY2(boxes.at(1)->isHidden(), "nothing here starts programs with the system");
        boxes.first()->click();
        QVERIFY(!settings().showNotifications);
        boxes.last()->click();
        QVERIFY(settings().openWindowOnStartup);
        dialog.reset();
        QVERIFY(QFile::exists(PathHelper::settingsFile()));
    }

    void language()
    {
        settings().uiLanguage = u"xx_XX"_s;
        Language::loadLanguageSettings();
        auto dialog = std::make_unique<PrefsDialog>();
        QCOMPARE(dialog->findChild<QComboBox*>()->currentText(), u"English"_s);
        dialog.reset();
        QCOMPARE(settings().uiLanguage, u"xx_XX"_s);

        dialog = std::make_unique<PrefsDialog>();
        auto* combo = dialog->findChild<QComboBox*>();
        Q_EMIT combo->activated(0);
        QCOMPARE(settings().uiLanguage, u"en_US"_s);
        combo->setCurrentText(u"Russian"_s);
        QCOMPARE(settings().uiLanguage, u"ru_RU"_s);
        QTRY_COMPARE(dialog->windowTitle(), u"Настройки Mivora"_s);
        const PrefsDialog next;
        QCOMPARE(next.findChild<QComboBox*>()->currentText(), u"Russian"_s);
    }

    void about()
    {
        QWidget window;
        AboutDialog::showMe(&window);
        QPointer<AboutDialog> dialog = window.findChild<AboutDialog*>();
        QHideEvent minimised;
        QSpontaneKeyEvent::setSpontaneous(&minimised);
        qApp->notify(dialog, &minimised); // sendEvent() would drop the mark
        AboutDialog::showMe(&window);
        QCOMPARE(window.findChildren<AboutDialog*>().size(), 1);
        for (LinkLabel* label : dialog->findChildren<LinkLabel*>()) {
            if (label->text().contains("href=eula"_L1))
                Q_EMIT label->linkActivated(u"eula"_s);
        }
        const QPointer<EulaDialog> licence = dialog->findChild<EulaDialog*>();
        QVERIFY(licence && licence->isModal());
        const QString text = licence->findChild<QTextEdit*>()->toPlainText();
        QVERIFY2(text.contains("Mivora by Quendel"_L1) && !text.contains('_'_L1), qPrintable(text));
        QTest::keyClick(licence, Qt::Key_Return);
        QTRY_VERIFY(!licence);
        QTest::keyClick(dialog, Qt::Key_Return);
        QTRY_VERIFY(!dialog);
    }

    void onlyANewerVersionIsOffered()
    {
        const QString current = ProductHelper::productVersion().toString();
        for (const auto& [latest, offered] :
             {std::pair(u"99"_s, 1), {current, 0}, {u"0.0.1"_s, 0}, {QString(), 0}}) {
            ProductHelper::setLatestProductVersion(ProductVersion(latest));
            QWidget window;
            AboutDialog::showMe(&window);
            QStringList lines;
            for (const LinkLabel* label : window.findChildren<LinkLabel*>())
                lines += label->text();
            QCOMPARE(lines.filter(u"Download"_s).size(), offered);
        }
    }

private:
    const TemporaryHome m_home;
};

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
