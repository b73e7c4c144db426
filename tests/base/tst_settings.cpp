// The program settings: both layouts of the file, damaged values, what is written.
#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"
#include "tests/base/Files.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <optional>

using namespace Qt::StringLiterals;

namespace {
QString described(const ProgramSettings& s)
{
    const QRect& frame = s.mainWindowFrame;
    return u"%1 (%2 %3 %4 %5) %6 %7%8%9 "_s.arg(s.compactView)
               .arg(frame.x())
               .arg(frame.y())
               .arg(frame.width())
               .arg(frame.height())
               .arg(s.groupPanelWidth)
               .arg(s.openWindowOnStartup)
               .arg(s.runOnSystemStartup)
               .arg(s.showNotifications) +
           s.uiLanguage + u' ' + s.version;
}
} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        m_dir.emplace();
    }

    void load_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        const QByteArray first = "[General]\nCompactView=true\nWindowRect=@Rect(10 20 800 600)\n"
                                 "GroupPanelWidth=250\n";
        QTest::newRow("garbage") << QByteArray("\x7f\x00]=[%%@(\\x\n=\n[[", 14)
                                 << u"0 (0 0 0 0) 190 111 en_US "_s;
        QTest::newRow("first layout") << first << u"1 (10 20 800 600) 250 111 en_US "_s;
        QTest::newRow("current layout wins, key by key")
            << first + "general.compact_view=false\ngeneral.group_panel_width=300\n"
            << u"0 (10 20 800 600) 300 111 en_US "_s;
        QTest::newRow("current layout")
            << QByteArray("[General]\ngeneral.compact_view=true\n"
                          "general.main_window_frame=@Rect(-5 0 1 2)\n"
                          "general.group_panel_width=-7\ngeneral.open_window_on_startup=false\n"
                          "general.run_on_system_startup=false\ngeneral.show_notifications=false\n"
                          "general.ui_language=ru_RU\nversion=0.1.2\n")
            << u"1 (-5 0 1 2) -7 000 ru_RU 0.1.2"_s;
    }
    void load()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, expected);
        writeFile(path(), text);
        ProgramSettings settings;
        QVERIFY(settings.load(path()));
        QCOMPARE(described(settings), expected);
        QCOMPARE(contentsOf(path()), text);
    }

    void save()
    {
        writeFile(path(), "[General]\nCompactView=true\nWindowRect=@Rect(10 20 800 600)\n"
                          "version=0.0.1\nother=kept\n\n[Elsewhere]\nkey=kept\n");
        ProgramSettings settings;
        settings.load(path());
        settings.uiLanguage = u"ru_RU"_s;
        settings.showNotifications = false;
        settings.save(path());
        QCOMPARE(QString::fromUtf8(contentsOf(path())),
                 u"[General]\nCompactView=true\nWindowRect=@Rect(10 20 800 600)\n"
                 "general.compact_view=true\ngeneral.group_panel_width=190\n"
                 "general.main_window_frame=@Rect(10 20 800 600)\n"
                 "general.open_window_on_startup=true\n"
                 "general.run_on_system_startup=true\ngeneral.show_notifications=false\n"
                 "general.ui_language=ru_RU\nother=kept\nversion="_s +
                     ProductHelper::productVersion().toString() + u"\n\n[Elsewhere]\nkey=kept\n"_s);
    }

    /// Neither a folder of that name nor a folder that cannot be made says a word.
    void unwritable()
    {
        writeFile(m_dir->filePath(u"file"_s), "in the way");
        QVERIFY(QDir(m_dir->path()).mkdir(u"folder"_s));
        for (const QString& name : {u"folder"_s, u"file/settings.ini"_s}) {
            ProgramSettings settings;
            settings.save(m_dir->filePath(name));
            QVERIFY(settings.load(m_dir->filePath(name)));
        }
    }

private:
    [[nodiscard]] QString path() const { return m_dir->filePath(u"settings.ini"_s); }

    std::optional<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
