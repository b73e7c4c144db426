// The preferences, the about box and the licence.
#include "app/base/PathHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/language/Language.h"
#include "tests/support/TemporaryHome.h"
#include "ui/controls/AboutDialog.h"
#include "ui/controls/EulaDialog.h"
#include "ui/controls/LinkLabel.h"
#include "ui/controls/Prefs.h"
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

bool isFixedAtItsHint(const QDialog& dialog)
{
    return dialog.minimumSize() == dialog.sizeHint() && dialog.maximumSize() == dialog.sizeHint();
}

QCheckBox* box(const QDialog& dialog, const QString& text)
{
    for (auto* box : dialog.findChildren<QCheckBox*>()) {
        if (box->text() == text)
            return box;
    }
    return nullptr;
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
        dynamic_singleton<ProgramSettings>::destroy();
        QFile::remove(PathHelper::settingsFile());
    }

    void preferences()
    {
        settings().openWindowOnStartup = false;
        std::unique_ptr<PrefsDialog> dialog(prefs::dialogForPlatform(nullptr));
        dialog.reset();
        QVERIFY2(!QFile::exists(PathHelper::settingsFile()), "nothing was touched");

        dialog.reset(prefs::dialogForPlatform(nullptr));
        QVERIFY(box(*dialog, u"Run on system startup"_s)->isHidden());
        box(*dialog, u"Show notifications"_s)->click();
        QVERIFY(!settings().showNotifications);
        QCheckBox* open = box(*dialog, u"Open window on startup"_s);
        open->click();
        QVERIFY(settings().openWindowOnStartup);
        open->click();
        QVERIFY(!settings().openWindowOnStartup);
        dialog.reset();
        QVERIFY(QFile::exists(PathHelper::settingsFile()));
    }

    void language()
    {
        settings().uiLanguage = u"xx_XX"_s;
        Language::loadLanguageSettings();
        auto dialog = std::make_unique<PrefsDialog>();
        auto* combo = dialog->findChild<QComboBox*>();
        QCOMPARE(combo->currentText(), u"English"_s);
        QVERIFY(isFixedAtItsHint(*dialog));
        dialog.reset();
        QCOMPARE(settings().uiLanguage, u"xx_XX"_s);

        dialog = std::make_unique<PrefsDialog>();
        combo = dialog->findChild<QComboBox*>();
        Q_EMIT combo->activated(0);
        QCOMPARE(settings().uiLanguage, u"en_US"_s);
        combo->setCurrentText(u"Russian"_s);
        QCOMPARE(settings().uiLanguage, u"ru_RU"_s);
        QTRY_COMPARE(dialog->windowTitle(), u"Настройки Mivora"_s);
        QVERIFY(isFixedAtItsHint(*dialog));
        const PrefsDialog next;
        QCOMPARE(next.findChild<QComboBox*>()->currentText(), u"Russian"_s);
    }

    void about()
    {
        QWidget window;
        AboutDialog::showMe(&window);
        AboutDialog::showMe(&window);
        QCOMPARE(window.findChildren<AboutDialog*>().size(), 1);
        QPointer<AboutDialog> dialog = window.findChild<AboutDialog*>();
        Language::setLanguage(u"ru_RU"_s);
        QTRY_COMPARE(dialog->windowTitle(), u"О программе Mivora"_s);
        QVERIFY(isFixedAtItsHint(*dialog));
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

private:
    const TemporaryHome m_home;
};

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
