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

class tst_Dialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { initLanguages(); }

    void preferences()
    {
        m_settings.openWindowOnStartup = false;
        auto dialog = std::make_unique<PrefsDialog>();
        dialog.reset();
        QVERIFY2(!QFile::exists(PathHelper::settingsFile()), "nothing was touched");

        dialog = std::make_unique<PrefsDialog>();
        const QList<QCheckBox*> boxes = dialog->findChildren<QCheckBox*>();
        QVERIFY2(boxes.at(1)->isHidden(), "nothing here starts programs with the system");
        boxes.first()->click();
        boxes.last()->click();
        QVERIFY(!m_settings.showNotifications && m_settings.openWindowOnStartup);
        dialog.reset();
        QVERIFY(QFile::exists(PathHelper::settingsFile()));
    }

    void language()
    {
        m_settings.uiLanguage = u"xx_XX"_s;
        Language::loadLanguageSettings();
        PrefsDialog dialog;
        auto* combo = dialog.findChild<QComboBox*>();
        QCOMPARE(combo->currentText(), u"English"_s);
        QCOMPARE(m_settings.uiLanguage, u"xx_XX"_s);
        Q_EMIT combo->activated(0);
        QCOMPARE(m_settings.uiLanguage, u"en_US"_s);
        combo->setCurrentText(u"Russian"_s);
        QCOMPARE(m_settings.uiLanguage, u"ru_RU"_s);
        QTRY_COMPARE(dialog.windowTitle(), u"Настройки Mivora"_s);
        QCOMPARE(PrefsDialog().findChild<QComboBox*>()->currentText(), u"Russian"_s);
        Language::setLanguage(u"en_US"_s);
    }

    void about()
    {
        const QPointer<AboutDialog> dialog = open();
        QHideEvent minimised;
        QSpontaneKeyEvent::setSpontaneous(&minimised);
        qApp->notify(dialog, &minimised); // sendEvent() would drop the mark
        QCOMPARE(open(), dialog.data());
        for (LinkLabel* label : dialog->findChildren<LinkLabel*>())
            Q_EMIT label->linkActivated(label->text().contains("href=eula"_L1) ? u"eula"_s
                                                                               : QString());
        const QPointer<EulaDialog> licence = dialog->findChild<EulaDialog*>();
        QVERIFY(licence);
        const QString text = licence->findChild<QTextEdit*>()->toPlainText();
        QVERIFY2(text.contains("Mivora by Quendel"_L1) && !text.contains('_'_L1), qPrintable(text));
        QTest::keyClick(dialog, Qt::Key_Return);
        QTRY_VERIFY(!dialog);
    }

    void onlyANewerVersionIsOffered()
    {
        const QString current = ProductHelper::productVersion().toString();
        for (const auto& [latest, offered] :
             {std::pair(u"99"_s, 1), {current, 0}, {u"0.0.1"_s, 0}, {QString(), 0}}) {
            ProductHelper::setLatestProductVersion(ProductVersion(latest));
            const std::unique_ptr<AboutDialog> dialog(open());
            QCOMPARE(dialog->findChildren<LinkLabel*>().size(), 3 + offered);
        }
    }

private:
    AboutDialog* open()
    {
        AboutDialog::showMe(&m_window);
        return m_window.findChild<AboutDialog*>();
    }

    const TemporaryHome m_home;
    QWidget m_window;
    ProgramSettings& m_settings = dynamic_singleton<ProgramSettings>::inst();
};

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
