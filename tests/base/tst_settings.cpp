// The program settings: both layouts of the file, damaged values, what is written.
#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"
#include "tests/base/Files.h"

#include <QRegularExpression>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class tst_Settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    /// What is saved shows what was loaded.
    void loadAndSave_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("general");
        const QByteArray defaults = "general.open_window_on_startup=true\n"
                                    "general.run_on_system_startup=true\n"
                                    "general.show_notifications=true\ngeneral.ui_language=en_US\n";
        const QByteArray first = "CompactView=true\nGroupPanelWidth=250\n"
                                 "WindowRect=@Rect(10 20 800 600)\n";
        const QByteArray frame = "general.main_window_frame=@Rect(10 20 800 600)\n";
        const auto row = [](const char* name, const QByteArray& text, const QByteArray& saved) {
            QTest::newRow(name) << text << saved;
        };
        row("first layout", first,
            "general.compact_view=true\ngeneral.group_panel_width=250\n" + frame + defaults);
        const QByteArray some = "general.compact_view=false\ngeneral.group_panel_width=300\n";
        row("current layout wins, key by key", first + some, some + frame + defaults);
        const QByteArray current = "general.backups=false\ngeneral.compact_view=true\n"
                                   "general.group_panel_width=-7\n"
                                   "general.main_window_frame=@Rect(-5 0 1 2)\n"
                                   "general.open_window_on_startup=false\n"
                                   "general.run_on_system_startup=false\n"
                                   "general.show_notifications=false\n"
                                   "general.ui_language=ru_RU\nother=kept\n";
        row("current layout", current, current);
        row("garbage", "general.group_panel_width=wide\nversion=%%@(\\x\n[[",
            "general.compact_view=false\ngeneral.group_panel_width=0\n"
            "general.main_window_frame=@Rect(0 0 0 0)\n" +
                defaults);
    }
    void loadAndSave()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, general);
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"settings.ini"_s);
        const QByteArray text = "[General]\n" + before;
        writeFile(path, text);
        ProgramSettings settings;
        QVERIFY(settings.load(path));
        QCOMPARE(contentsOf(path), text);
        settings.save(path);
        const QByteArray saved = contentsOf(path);
        QVERIFY2(saved.contains(general), saved.constData());
        QVERIFY(saved.contains(ProductHelper::productVersion().toString().toUtf8()));
        QVERIFY(before.contains("CompactView") == saved.contains("\nCompactView=true\n"));
    }
};

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
