// The preferences and the about box.
#include "app/base/PathHelper.h"
#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/language/Language.h"
#include "tests/support/TemporaryHome.h"
#include "ui/controls/AboutDialog.h"
#include "ui/controls/LinkLabel.h"
#include "ui/controls/PrefsDialog.h"

#include <QCheckBox>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Dialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { initLanguages(); }

    void preferences()
    {
        m_settings.openWindowOnStartup = false;
        m_settings.uiLanguage = u"xx_XX"_s; // not available here
        auto dialog = std::make_unique<PrefsDialog>();
        dialog.reset();
        QVERIFY2(!QFile::exists(PathHelper::settingsFile()), "nothing was touched");

        dialog = std::make_unique<PrefsDialog>();
        const QList<QCheckBox*> boxes = dialog->findChildren<QCheckBox*>();
        QVERIFY2(boxes.at(1)->isHidden(), "nothing here starts programs with the system");
        boxes.first()->click();
        boxes.last()->click();
        QVERIFY(!m_settings.showNotifications && m_settings.openWindowOnStartup);
        QCOMPARE(m_settings.uiLanguage, u"xx_XX"_s);
        dialog.reset();
        QVERIFY(QFile::exists(PathHelper::settingsFile()));
    }

    void onlyANewerVersionIsOffered()
    {
        const QString current = ProductHelper::productVersion().toString();
        for (const auto& [latest, offered] :
             {std::pair(u"99"_s, 1), {current, 0}, {u"0.0.1"_s, 0}, {QString(), 0}}) {
            ProductHelper::setLatestProductVersion(ProductVersion(latest));
            AboutDialog::showMe(&m_window);
            const std::unique_ptr<AboutDialog> dialog(m_window.findChild<AboutDialog*>());
            QCOMPARE(dialog->findChildren<LinkLabel*>().size(), 3 + offered);
        }
    }

private:
    const TemporaryHome m_home;
    QWidget m_window;
    ProgramSettings& m_settings = dynamic_singleton<ProgramSettings>::inst();
};

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
