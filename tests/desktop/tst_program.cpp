// The real program on a real desktop: its window, a second copy, how it ends, what it refuses.
#include "tests/app/Child.h"
#include "tests/base/Files.h"
#include "tests/desktop/TrayHost.h"
#include "tests/support/StoreBuilder.h"
#include "tests/support/TemporaryHome.h"

#include <QDir>
#include <QRect>
#include <QRegularExpression>
#include <QSettings>

#include <optional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patienceMs = 20000;

QString xdotool(const QStringList& arguments,
                const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(u"xdotool"_s, arguments);
    process.waitForFinished(patienceMs);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

bool isActive(const QString& window)
{
    return !window.isEmpty() && xdotool({u"getactivewindow"_s}) == window;
}

/// `keys`: their names, with a blank between each two.
void press(const QString& keys)
{
    xdotool(QStringList{u"key"_s} + keys.split(u' '));
}

} // namespace

class tst_Program : public QObject
{
    Q_OBJECT

private:
    std::optional<TemporaryHome> m_home;
    QProcessEnvironment m_environment;
    std::optional<Child> m_manager;
    std::optional<Child> m_program;
    QString m_window;

    [[nodiscard]] QString path(const QString& name) const
    {
        return m_home->filePath(u".Mivora/User Data/"_s + name);
    }
    [[nodiscard]] QByteArray read(const QString& name) const { return contentsOf(path(name)); }

    void putDatabase(const QString& name)
    {
        const QString source = QStringLiteral(MVR_SOURCE_DIR "/tests/data/") + name;
        writeFile(path(u"database.xml"_s), contentsOf(source));
    }

    /// What lies in the data folder, without what tells the copies of each other.
    [[nodiscard]] QString files() const
    {
        QStringList names = QDir(path({})).entryList(
            QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
        names.removeIf([](const QString& name) { return name.startsWith("instance-"_L1); });
        return names.join(u' ');
    }

    /// The names of the Inbox's tasks; none when the database does not load.
    [[nodiscard]] QStringList tasksOnDisk() const
    {
        const StoreBuilder disk(path(u"database.xml"_s));
        QStringList names;
        for (const TodoTask::Id& id : disk.members(TaskStorage::ms_inboxId))
            names << disk.store.get(id).name();
        return names;
    }

    void launch() { m_program.emplace(QStringLiteral(MVR_PROGRAM), QStringList(), m_environment); }

    /// Starts the program and waits until its window is there and has the focus.
    void startProgram()
    {
        launch();
        awaitWindow();
    }

    /// Starts the program in a session whose manager tells when the program has come up.
    void startInSession()
    {
        m_manager.emplace(QStringLiteral(MVR_SESSION_MANAGER));
        m_environment.insert(u"SESSION_MANAGER"_s, m_manager->line());
        launch();
        QCOMPARE(m_manager->line(), u"registered"_s);
        QCOMPARE(m_manager->line(), u"saved"_s);
    }

    /// Starts another copy, outside any session, which ends at once.
    static void
    startSecond(const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
    {
        QCOMPARE(Child(QStringLiteral(MVR_PROGRAM), {}, environment).exitCode(), 0);
    }

    void endProgram(int signal = SIGTERM)
    {
        m_program->signal(signal);
        QCOMPARE(m_program->exitCode(), 0);
    }

    /// The visible window of the program that has that title; empty without one.
    [[nodiscard]] QString visibleWindow(const QString& title = u"Mivora"_s) const
    {
        return xdotool({u"search"_s, u"--all"_s, u"--onlyvisible"_s, u"--pid"_s,
                        QString::number(m_program->id()), u"--name"_s, u'^' + title + u'$'});
    }
    void awaitWindow(const QString& title = u"Mivora"_s)
    {
        QTRY_VERIFY_WITH_TIMEOUT(isActive(visibleWindow(title)), patienceMs);
        m_window = visibleWindow(title);
    }
    /// Again and again: what comes while the focus changes hands is lost.
    void hide(const QStringList& how) const
    {
        QTRY_VERIFY_WITH_TIMEOUT((xdotool(how), visibleWindow().isEmpty()), patienceMs);
    }

private Q_SLOTS:
    void init()
    {
        m_home.emplace();
        QVERIFY(QDir().mkpath(path({})));
        putDatabase(u"sample.xml"_s);
        m_environment = QProcessEnvironment::systemEnvironment();
    }

    void cleanup()
    {
        const QString errors = m_program ? m_program->errors() : QString();
        m_program.reset();
        m_manager.reset();
        m_home.reset();
        QCOMPARE(errors, QString());
    }

    void endsInOrder_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("terminate") << SIGTERM;
        QTest::newRow("interrupt") << SIGINT;
        QTest::newRow("hang up") << SIGHUP;
    }

    void endsInOrder()
    {
        QFETCH(const int, signal);
        const QByteArray before = read(u"database.xml"_s);
        startProgram();
        // As when whoever reads the error stream is gone: nothing to end for.
        m_program->signal(SIGPIPE);
        endProgram(signal);
        QCOMPARE(read(u"database.xml"_s), before);
        QCOMPARE(read(u"log.txt"_s), QByteArray());
        QCOMPARE(files(), u"database.xml log.txt metrics.xml settings.ini"_s);
        QVERIFY(read(u"metrics.xml"_s).endsWith("<metrics><id></id></metrics>\n"));
        QVERIFY(read(u"settings.ini"_s).contains("\ngeneral.ui_language=\n"));
        QVERIFY(read(u"settings.ini"_s).contains("\nversion=0.2.608\n"));
    }

    void closingHidesAndASecondStartShows()
    {
        startProgram();
        hide({u"key"_s, u"alt+F4"_s});
        startSecond();
        awaitWindow();

        // A start from another session finds the copy all the same, and one from another home whose
        // database is a link to this one.
        hide({u"windowminimize"_s, m_window});
        const QString home = m_home->filePath(u"other"_s);
        QVERIFY(QDir().mkpath(home + u"/.Mivora/User Data"_s));
        QVERIFY(QFile::link(path(u"database.xml"_s), home + u"/.Mivora/User Data/database.xml"_s));
        QProcessEnvironment elsewhere = m_environment;
        elsewhere.insert(u"XDG_RUNTIME_DIR"_s, m_home->path());
        elsewhere.insert(u"HOME"_s, home);
        startSecond(elsewhere);
        awaitWindow();
        endProgram();
        QCOMPARE(read(u"log.txt"_s), QByteArray());
    }

    void startWithoutDatabase()
    {
        QVERIFY(QDir(m_home->filePath(u".Mivora"_s)).removeRecursively());
        const mode_t before = ::umask(0);
        startProgram();
        ::umask(before);
        press(u"ctrl+n x"_s);
        endProgram();
        QCOMPARE(files(), u"database.xml log.txt metrics.xml settings.ini"_s);
        for (const QString& name : files().split(u' ') + QStringList{QString(), u".."_s}) {
            const QFile::Permissions ofOthers =
                QFile::permissions(path(name)) & QFile::Permissions(0x0077);
            QVERIFY2(!ofOthers, qPrintable(name));
        }
    }

    void hiddenStart()
    {
        const QString ini = path(u"settings.ini"_s);
        writeFile(ini, "[General]\ngeneral.open_window_on_startup=false\n"
                       "general.ui_language=ru_RU\nversion=0.1\n");
        startInSession();
        QCOMPARE(visibleWindow(), QString());
        QVERIFY(contentsOf(ini).contains("\ngeneral.open_window_on_startup=false\n"));
        QVERIFY(contentsOf(ini).contains("\ngeneral.ui_language=ru_RU\n"));
        QVERIFY(contentsOf(ini).contains("\nversion=0.2.608\n"));

        QVERIFY(QFile::remove(ini));
        startSecond();
        awaitWindow();
        endProgram();
        const QSettings last(ini, QSettings::IniFormat);
        QCOMPARE(last.value("general.open_window_on_startup").toBool(), false);
        QCOMPARE(last.value("general.ui_language").toString(), u"ru_RU"_s);
        QCOMPARE(last.value("general.main_window_frame").toRect().size(), QSize(800, 450));
    }

    /// Neither the frame around the window nor the compact view may shift it from start to start.
    void windowComesBackWhereItWas()
    {
        QSettings settings(path(u"settings.ini"_s), QSettings::IniFormat);
        const QRect place(120, 90, 640, 480);
        settings.setValue("general.compact_view", true);
        settings.setValue("general.main_window_frame", place);
        settings.setValue("general.group_panel_width", 222);
        for (int start = 0; start < 2; ++start) {
            settings.sync();
            startProgram();
            endProgram();
            settings.sync();
            QCOMPARE(settings.value("general.main_window_frame").toRect(), place);
            QCOMPARE(settings.value("general.group_panel_width").toInt(), 222);
            QCOMPARE(settings.value("general.compact_view").toBool(), true);
        }
    }

    void sessionSaves()
    {
        const QByteArray before = read(u"database.xml"_s);
        startInSession();
        awaitWindow();
        QCOMPARE(read(u"database.xml"_s), before);
        QVERIFY2(!QFile::exists(path(u"database.xml.bak"_s)), "nothing changed: nothing written");

        QVERIFY(QFile::remove(path(u"database.xml"_s)));
        m_manager->command(u"save"_s);
        QCOMPARE(m_manager->line(), u"saved"_s);
        const QStringList tasks = tasksOnDisk();
        QVERIFY2(tasks.size() > 1, "written in any case");

        press(u"Down Delete"_s);
        hide({u"key"_s, u"alt+F4"_s});
        m_manager->command(u"save"_s);
        QCOMPARE(m_manager->line(), u"saved"_s);
        QCOMPARE(tasksOnDisk(), tasks.mid(1));
        QVERIFY2(m_program->isRunning(), "saving ends nothing");
    }

    void sessionEnds_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("title");
        const auto row = [](const char* name, const QString& entry, const QString& keys,
                            const QString& title) {
            QTest::newRow(name) << entry << keys << title;
        };
        row("window alone", {}, {}, u"Mivora"_s);
        row("preferences", u"Preferences..."_s, {}, u"Mivora Preferences"_s);
        row("about", u"About"_s, {}, u"About Mivora"_s);
        row("library", u"About"_s, u"Tab Tab Return"_s, u"About Qt Library"_s);
        row("licence", u"About"_s, u"Tab Tab Tab Return"_s, u"Mivora License Agreement"_s);
        row("export", u"Export..."_s, {}, u"Export"_s);
        row("export to a file", u"Export..."_s, u"Return"_s, u"Export to"_s);
    }

    /// Whatever is open, all that was entered is on the disk, and the program is gone.
    void sessionEnds()
    {
        QFETCH(const QString, entry);
        QFETCH(const QString, keys);
        QFETCH(const QString, title);
        const TrayHost host;
        startInSession();
        awaitWindow();
        press(u"Down Return ctrl+a x Return"_s);
        QTRY_VERIFY(host.hasItem());
        if (!entry.isEmpty()) {
            host.choose(entry);
            QTRY_VERIFY_WITH_TIMEOUT(
                !isActive(m_window) && !xdotool({u"getactivewindow"_s}).isEmpty(), patienceMs);
        }
        if (!keys.isEmpty())
            press(keys);
        awaitWindow(title);
        QVERIFY(QFile::remove(path(u"settings.ini"_s)) && QFile::remove(path(u"metrics.xml"_s)));

        m_manager->command(u"shutdown"_s);
        QCOMPARE(m_manager->line(), u"saved"_s);
        QCOMPARE(m_manager->line(), u"closed"_s);
        QCOMPARE(m_program->exitCode(), 0);
        QCOMPARE(read(u"log.txt"_s), QByteArray());
        QVERIFY(QFile::exists(path(u"settings.ini"_s)) && QFile::exists(path(u"metrics.xml"_s)));
        QCOMPARE(tasksOnDisk().value(0), u"x"_s);
    }

    void traySteersTheProgram()
    {
        std::optional<TrayHost> host(std::in_place);
        startProgram();
        host.emplace();
        QTRY_VERIFY2(host->hasItem(), "a host that was started anew");

        for (const QStringList& goneBy :
             {QStringList{u"key"_s, u"alt+F4"_s}, {u"set_desktop"_s, u"1"_s}}) {
            hide(goneBy);
            host->click();
            awaitWindow();
        }
        hide({u"windowminimize"_s, m_window});
        host->choose(u"Preferences..."_s);
        const QString title = u"Mivora Preferences"_s;
        awaitWindow(title);
        const QString dialog = m_window;
        host->choose(u"Preferences..."_s);
        host->choose(u"Show Mivora"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!visibleWindow().isEmpty(), patienceMs);
        QTRY_VERIFY2_WITH_TIMEOUT(isActive(dialog), "not beneath the window", patienceMs);
        // English to Russian: the menu follows, and the choice is stored, though its dialog is
        // open.
        press(u"Tab Tab Tab Down"_s);
        QTRY_VERIFY(host->menu().contains(u"Выход"_s));
        QCOMPARE(visibleWindow(title + u"|Настройки Mivora"_s), dialog);
        press(u"Escape"_s);
        awaitWindow();
        press(u"Down Return ctrl+a x"_s);
        host->choose(u"Выход"_s);
        QCOMPARE(m_program->exitCode(), 0);
        QCOMPARE(tasksOnDisk().value(0), u"x"_s);
        QVERIFY(read(u"settings.ini"_s).contains("\ngeneral.ui_language=ru_RU\n"));
    }

    void firstStartSpeaksTheLanguageOfTheDesktop()
    {
        m_environment.insert(u"LANGUAGE"_s, u"de:ru"_s);
        const TrayHost host;
        for (int start = 0; start < 2; ++start) {
            startProgram();
            QTRY_VERIFY(host.hasItem() && host.menu().contains(u"Показать Mivora"_s));
            endProgram();
            QVERIFY(read(u"settings.ini"_s).contains("\ngeneral.ui_language=\n"));
        }
    }

    /// On a compositor that shows its screen, and takes its keys, in a window of the X server.
    void waylandOnly()
    {
        const Child compositor(u"weston"_s, {u"--backend=x11-backend.so"_s, u"--use-pixman"_s,
                                             u"--shell=kiosk-shell.so"_s, u"--socket=mivora"_s,
                                             u"--log="_s + m_home->filePath(u"weston.log"_s)});
        QTRY_VERIFY_WITH_TIMEOUT(
            xdotool({u"getactivewindow"_s, u"getwindowname"_s}).startsWith("Weston"_L1),
            patienceMs);
        m_environment.remove(u"DISPLAY"_s);
        m_environment.insert(u"WAYLAND_DISPLAY"_s, u"mivora"_s);
        m_environment.insert(u"WAYLAND_DEBUG"_s, u"1"_s);
        launch();
        static const QRegularExpression keysComeIn(u"wl_keyboard@\\d+\\.enter"_s);
        QString said;
        QTRY_VERIFY_WITH_TIMEOUT((said += m_program->errors()).contains(keysComeIn), patienceMs);
        press(u"ctrl+n x Return ctrl+q"_s);
        QCOMPARE(m_program->exitCode(), 0);
        m_program.reset();
        QVERIFY(tasksOnDisk().contains(u"x"_s));
    }

    void refusedDatabase_data()
    {
        QTest::addColumn<bool>("bySignal");
        QTest::newRow("the box is closed") << false;
        QTest::newRow("terminate") << true;
    }

    void refusedDatabase()
    {
        QFETCH(const bool, bySignal);
        putDatabase(u"damaged/version-newer.xml"_s);
        const QByteArray before = read(u"database.xml"_s);
        startProgram();
        QVERIFY2(read(u"log.txt"_s).contains("version is not supported"), "the box is still open");

        // Somebody who tries again while the box is open is not made to wait.
        startSecond();
        if (bySignal)
            m_program->signal(SIGTERM);
        else
            press(u"Return"_s);
        QCOMPARE(m_program->exitCode(), 1);
        QCOMPARE(read(u"database.xml"_s), before);
        QCOMPARE(files(), u"database.xml log.txt"_s);
    }

    void refusedFolder()
    {
        const QString folder = m_home->filePath(u".Mivora"_s);
        QVERIFY(QDir(folder).removeRecursively());
        writeFile(folder, "takes no lock");
        startProgram();
        press(u"Return"_s);
        QCOMPARE(m_program->exitCode(), 1);
        QVERIFY(QFile::remove(folder) && QFile::link(u"/not/mounted"_s, folder));
        startProgram();
        press(u"Return"_s);
        QCOMPARE(m_program->exitCode(), 1);
    }

    void logThatCannotBeOpened()
    {
        QVERIFY(QDir().mkpath(path(u"log.txt"_s)));
        startProgram();
        endProgram();
    }

    void editsAreOnTheDisk()
    {
        QStringList expected = tasksOnDisk();
        QVERIFY(expected.size() > 2);
        startProgram();
        press(u"Down Return ctrl+a x Return Down Delete ctrl+q"_s);
        QCOMPARE(m_program->exitCode(), 0);
        expected[0] = u"x"_s;
        expected.removeAt(1);
        QCOMPARE(tasksOnDisk(), expected);

        QVERIFY(QDir(path(u"backups"_s)).exists() && QDir(path(u"backups"_s)).removeRecursively());
        QSettings(path(u"settings.ini"_s), QSettings::IniFormat).setValue("general.backups", false);
        startProgram();
        press(u"Down Delete"_s);
        endProgram();
        QCOMPARE(tasksOnDisk(), expected.mid(1));
        QVERIFY(!QFile::exists(path(u"backups"_s)));
        QVERIFY(read(u"settings.ini"_s).contains("\ngeneral.backups=false\n"));
    }

    /// A display that dies takes the program with it, but nothing that was entered.
    void displayGoesAway()
    {
        const QStringList before = tasksOnDisk();
        Child display(u"Xvfb"_s,
                      {u"-displayfd"_s, u"1"_s, u"-noreset"_s, u"-nolisten"_s, u"tcp"_s});
        m_environment.insert(u"DISPLAY"_s, u":"_s + display.line());
        launch();
        QTRY_COMPARE_WITH_TIMEOUT(xdotool({u"getwindowfocus"_s, u"getwindowname"_s}, m_environment),
                                  u"Mivora"_s, patienceMs);
        xdotool({u"key"_s, u"Down"_s, u"Return"_s, u"ctrl+a"_s, u"x"_s}, m_environment);
        display.signal(SIGKILL);
        QCOMPARE(m_program->exitCode(), 1);
        QVERIFY(m_program->errors().contains("X11"_L1));
        QCOMPARE(tasksOnDisk(), QStringList{u"x"_s} + before.mid(1));
        QVERIFY(read(u"settings.ini"_s).contains("\nversion=0.2.608\n"));
    }
};

QTEST_GUILESS_MAIN(tst_Program)
#include "tst_program.moc"
