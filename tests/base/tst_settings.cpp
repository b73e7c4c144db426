// The program settings: both layouts of the file, damaged values, what is written, the upgrade.
#include "app/base/PathHelper.h"
#include "app/base/Platform.h"
#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {
QStringList startupCalls;

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

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<not there>");
}
} // namespace

// These stand in the place of the platform's own, which do nothing here.
bool platform::canSetProgramToRunAtStartup()
{
    return true;
}

bool platform::setProgramToRunAtStartup(const QString& executable, bool enable)
{
    startupCalls << executable + (enable ? u" on"_s : u" off"_s);
    return true;
}

class tst_Settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        m_dir.emplace();
        startupCalls.clear();
    }

    void load_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        const QString defaults = u"0 (0 0 0 0) 190 111 en_US "_s;

        QTest::newRow("no file") << QByteArray() << defaults;
        QTest::newRow("garbage") << QByteArray("\x7f\x00]=[%%@(\\x\n=\n[[", 14) << defaults;
        QTest::newRow("first layout")
            << QByteArray("[General]\nCompactView=true\nWindowRect=@Rect(10 20 800 600)\n"
                          "GroupPanelWidth=250\n")
            << u"1 (10 20 800 600) 250 111 en_US "_s;
        QTest::newRow("current layout wins, key by key")
            << QByteArray("[General]\nCompactView=true\nWindowRect=@Rect(10 20 800 600)\n"
                          "GroupPanelWidth=250\ngeneral.compact_view=false\n"
                          "general.group_panel_width=300\n")
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
        if (!text.isEmpty())
            write(text);
        ProgramSettings settings;
        settings.dateFormat = u"yyyy"_s;
        QVERIFY(settings.load(path()));
        QCOMPARE(described(settings), expected);
        QCOMPARE(settings.dateFormat, u"yyyy"_s);
        QCOMPARE(contentsOf(path()), text.isEmpty() ? "<not there>" : text);
    }

    void save()
    {
        write("[General]\nCompactView=true\nWindowRect=@Rect(10 20 800 600)\nversion=0.0.1\n"
              "other=kept\n\n[Elsewhere]\nkey=kept\n");
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
        QCOMPARE(names(), QStringList{u"settings.ini"_s});

        ProgramSettings again;
        again.load(path());
        QCOMPARE(described(again), u"1 (10 20 800 600) 190 110 ru_RU "_s +
                                       ProductHelper::productVersion().toString());
        again.resetToDefaults();
        QCOMPARE(described(again), u"0 (0 0 0 0) 190 111  "_s);
        QCOMPARE(again.dateFormat, QLocale::system().dateFormat(QLocale::ShortFormat));
    }

    /// Neither a folder of that name nor a folder that cannot be made says a word.
    void unwritable()
    {
        write("in the way", u"file"_s);
        QVERIFY(QDir(m_dir->path()).mkdir(u"folder"_s));
        for (const QString& name : {u"folder"_s, u"file/settings.ini"_s}) {
            ProgramSettings settings;
            settings.save(m_dir->filePath(name));
            QVERIFY(settings.load(m_dir->filePath(name)));
        }
        QCOMPARE(names(), QStringList({u"file"_s, u"folder"_s}));
    }

    void upgrade_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("applies");
        QTest::newRow("first run") << QString() << true;
        QTest::newRow("unreadable") << u"0.2.x"_s << true;
        QTest::newRow("older") << u"0.2.607"_s << true;
        QTest::newRow("this one") << u"0.2.608"_s << false;
        QTest::newRow("newer") << u"0.10.0"_s << false;
    }
    void upgrade()
    {
        QFETCH(QString, version);
        QFETCH(bool, applies);
        ProgramSettings settings;
        settings.version = version;
        settings.runOnSystemStartup = false;
        settings.upgradeSettings();
        QCOMPARE(startupCalls,
                 applies ? QStringList{PathHelper::executablePath() + u" off"_s} : QStringList());
    }

private:
    [[nodiscard]] QString path() const { return m_dir->filePath(u"settings.ini"_s); }
    [[nodiscard]] QStringList names() const
    {
        return QDir(m_dir->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    void write(const QByteArray& text, const QString& name = u"settings.ini"_s) const
    {
        QFile file(m_dir->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }

    std::optional<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
