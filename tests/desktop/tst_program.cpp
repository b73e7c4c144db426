// The real program on a real desktop: its window, a second copy, how it ends, what it refuses.
#include "taskdb/TaskStorage.h"
#include "tests/desktop/TrayHost.h"
#include "tests/support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRect>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

#include <csignal>
#include <memory>
#include <optional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patienceMs = 20000;

/// A program under test or a helper of one; killed when it goes out of scope.
class Process
{
public:
    explicit Process(const QString& program) { m_process.setProgram(program); }
    ~Process()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Process)

    void start(const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment(),
               const QStringList& arguments = {})
    {
        m_process.setProcessEnvironment(environment);
        m_process.setArguments(arguments);
        m_process.start();
        m_process.waitForStarted();
    }
    void signal(int number) const { ::kill(static_cast<pid_t>(m_process.processId()), number); }
    void write(const QByteArray& text) { m_process.write(text); }
    [[nodiscard]] qint64 id() const { return m_process.processId(); }
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }

    QString line()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(patienceMs)) {
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }
    QString errors() { return QString::fromUtf8(m_process.readAllStandardError()); }

    /// Waits for the end. Returns the exit code; -1 after a crash or when it goes on running.
    int exitCode()
    {
        if (isRunning() && !m_process.waitForFinished(patienceMs))
            return -1;
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

private:
    QProcess m_process;
};

QString output(const QString& program, const QStringList& arguments,
               const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.waitForFinished(patienceMs);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString xdotool(const QStringList& arguments)
{
    return output(u"xdotool"_s, arguments);
}

/// The visible window of the program that has that title; empty without one.
QString visibleWindow(const Process& program, const QString& title = u"Mivora"_s)
{
    return xdotool({u"search"_s, u"--all"_s, u"--onlyvisible"_s, u"--pid"_s,
                    QString::number(program.id()), u"--name"_s, u'^' + title + u'$'});
}

bool isActive(const QString& window)
{
    return !window.isEmpty() && xdotool({u"getactivewindow"_s}) == window;
}

bool isMinimised(const QString& window)
{
    return output(u"xprop"_s, {u"-id"_s, window, u"WM_STATE"_s}).contains("Iconic"_L1);
}

void press(const QStringList& keys)
{
    xdotool(QStringList{u"key"_s} + keys);
}

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<not there>");
}

} // namespace

class tst_Program : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void endsInOrder_data();
    void endsInOrder();
    void closingHidesAndASecondStartShows();
    void secondStartRestores();
    void startWithoutDatabase();
    void hiddenStart();
    void windowComesBackWhereItWas();
    void sessionSaves();
    void sessionEnds_data();
    void sessionEnds();
    void traySteersTheProgram();
    void firstStartSpeaksTheLanguageOfTheDesktop();
    void waylandOnly();
    void refusedDatabase_data();
    void refusedDatabase();
    void refusedFolder_data();
    void refusedFolder();
    void signalEndsTheRefusal();
    void logThatCannotBeOpened();
    void editsAreOnTheDisk();
    void displayGoesAway();

private:
    void putDatabase(const QString& name);
    void startProgram();
    [[nodiscard]] QString file(const QString& name) const;
    [[nodiscard]] QStringList files() const;
    [[nodiscard]] QStringList namesOnDisk(const FocusGroup::Id& group) const;

    std::optional<TemporaryHome> m_home;
    std::unique_ptr<Process> m_program;
    QProcessEnvironment m_environment;
    QString m_window;
};

void tst_Program::init()
{
    m_home.emplace();
    QVERIFY(QDir().mkpath(file({})));
    putDatabase(u"sample.xml"_s);
    m_environment = QProcessEnvironment::systemEnvironment();
}

void tst_Program::cleanup()
{
    if (m_program) {
        if (QTest::currentTestFailed())
            qWarning("the program said: %s", qPrintable(m_program->errors()));
        QCOMPARE(m_program->errors(), QString());
    }
    m_program.reset();
    m_home.reset();
}

QString tst_Program::file(const QString& name) const
{
    return m_home->filePath(u".Mivora/User Data/"_s + name);
}

/// What lies in the data folder, without what tells the copies of each other.
QStringList tst_Program::files() const
{
    QStringList names = QDir(file({})).entryList(
        QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    names.removeIf([](const QString& name) { return name.startsWith("instance-"_L1); });
    return names;
}

void tst_Program::putDatabase(const QString& name)
{
    const QString path = file(u"database.xml"_s);
    QFile::remove(path);
    QVERIFY(QFile::copy(QStringLiteral(MVR_SOURCE_DIR "/tests/data/") + name, path));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
}

/// Starts the program and waits until its window is there and has the focus.
void tst_Program::startProgram()
{
    m_program = std::make_unique<Process>(QStringLiteral(MVR_PROGRAM));
    m_program->start(m_environment);
    QTRY_VERIFY_WITH_TIMEOUT(isActive(visibleWindow(*m_program)), patienceMs);
    m_window = visibleWindow(*m_program);
}

QStringList tst_Program::namesOnDisk(const FocusGroup::Id& group) const
{
    TaskStorage storage(file(u"database.xml"_s));
    if (storage.init() != TaskStorage::NoError)
        return {u"the database does not load"_s};
    QList<TodoTask::Id> ids;
    storage.enumGroup(group, ids);
    QStringList names;
    for (const TodoTask::Id& id : std::as_const(ids))
        names << storage.get(id).name();
    return names;
}

void tst_Program::endsInOrder_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("terminate") << SIGTERM;
    QTest::newRow("interrupt") << SIGINT;
    QTest::newRow("hang up") << SIGHUP;
}

void tst_Program::endsInOrder()
{
    QFETCH(int, signal);
    const QByteArray before = contentsOf(file(u"database.xml"_s));
    startProgram();
    // As when whoever reads the error stream is gone: nothing to end for.
    m_program->signal(SIGPIPE);
    m_program->signal(signal);
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(contentsOf(file(u"database.xml"_s)), before);
    QCOMPARE(contentsOf(file(u"log.txt"_s)), QByteArray());
    QCOMPARE(files(),
             QStringList({u"database.xml"_s, u"log.txt"_s, u"metrics.xml"_s, u"settings.ini"_s}));
    QVERIFY(contentsOf(file(u"metrics.xml"_s)).endsWith("<metrics><id></id></metrics>\n"));
    const QByteArray settings = contentsOf(file(u"settings.ini"_s));
    QVERIFY2(settings.contains("\ngeneral.ui_language=\n"), settings.constData());
    QVERIFY2(settings.contains("\nversion=0.2.608\n"), settings.constData());
}

void tst_Program::closingHidesAndASecondStartShows()
{
    startProgram();
    press({u"alt+F4"_s});
    QTRY_VERIFY_WITH_TIMEOUT(visibleWindow(*m_program).isEmpty(), patienceMs);

    Process second(QStringLiteral(MVR_PROGRAM));
    second.start(m_environment);
    QCOMPARE(second.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(isActive(visibleWindow(*m_program)), patienceMs);
    QVERIFY(m_program->isRunning());

    m_program->signal(SIGTERM);
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(contentsOf(file(u"log.txt"_s)), QByteArray());
}

void tst_Program::secondStartRestores()
{
    startProgram();
    xdotool({u"windowminimize"_s, m_window});
    QTRY_VERIFY_WITH_TIMEOUT(isMinimised(m_window), patienceMs);

    // A start from another session finds the copy all the same, and one from another home whose
    // database is a link to this one.
    const QString home = m_home->filePath(u"other"_s);
    QVERIFY(QDir().mkpath(home + u"/.Mivora/User Data"_s));
    QVERIFY(QFile::link(file(u"database.xml"_s), home + u"/.Mivora/User Data/database.xml"_s));
    QProcessEnvironment elsewhere = m_environment;
    elsewhere.insert(u"XDG_RUNTIME_DIR"_s, m_home->path());
    elsewhere.insert(u"HOME"_s, home);
    Process second(QStringLiteral(MVR_PROGRAM));
    second.start(elsewhere);
    QCOMPARE(second.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(isActive(visibleWindow(*m_program)), patienceMs);
    QVERIFY(!isMinimised(m_window));
}

void tst_Program::startWithoutDatabase()
{
    QVERIFY(QDir(m_home->filePath(u".Mivora"_s)).removeRecursively());
    const mode_t before = ::umask(0);
    startProgram();
    ::umask(before);
    press({u"ctrl+n"_s, u"x"_s});
    m_program->signal(SIGTERM);
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(files(),
             QStringList({u"database.xml"_s, u"log.txt"_s, u"metrics.xml"_s, u"settings.ini"_s}));
    for (const QString& name : files() + QStringList{QString(), u".."_s}) {
        QVERIFY2(!(QFile::permissions(file(name)) & QFile::Permissions(0x0077)), qPrintable(name));
    }
}

void tst_Program::hiddenStart()
{
    QFile settings(file(u"settings.ini"_s));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("[General]\ngeneral.open_window_on_startup=false\n"
                   "general.ui_language=ru_RU\nversion=0.1\n");
    settings.close();
    // The session manager tells when the program has come up.
    Process manager(QStringLiteral(MVR_SESSION_MANAGER));
    manager.start();
    m_environment.insert(u"SESSION_MANAGER"_s, manager.line());
    m_program = std::make_unique<Process>(QStringLiteral(MVR_PROGRAM));
    m_program->start(m_environment);
    QCOMPARE(manager.line(), u"registered"_s);
    QCOMPARE(manager.line(), u"saved"_s);
    QCOMPARE(visibleWindow(*m_program), QString());
    const QByteArray saved = contentsOf(settings.fileName());
    QVERIFY2(saved.contains("\ngeneral.open_window_on_startup=false\n"), saved.constData());
    QVERIFY2(saved.contains("\ngeneral.ui_language=ru_RU\n"), saved.constData());
    QVERIFY2(saved.contains("\nversion=0.2.608\n"), saved.constData());

    QVERIFY(settings.remove());
    Process second(QStringLiteral(MVR_PROGRAM));
    second.start(m_environment);
    QCOMPARE(second.exitCode(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(isActive(visibleWindow(*m_program)), patienceMs);
    m_program->signal(SIGTERM);
    QCOMPARE(m_program->exitCode(), 0);
    const QSettings last(settings.fileName(), QSettings::IniFormat);
    QCOMPARE(last.value("general.open_window_on_startup").toBool(), false);
    QCOMPARE(last.value("general.ui_language").toString(), u"ru_RU"_s);
    QCOMPARE(last.value("general.main_window_frame").toRect().size(), QSize(800, 450));
}

/// Neither the frame around the window nor the compact view may shift it from start to start.
void tst_Program::windowComesBackWhereItWas()
{
    QSettings settings(file(u"settings.ini"_s), QSettings::IniFormat);
    settings.setValue("general.compact_view", true);
    settings.setValue("general.main_window_frame", QRect(120, 90, 640, 480));
    settings.setValue("general.group_panel_width", 222);
    for (int start = 0; start < 2; ++start) {
        settings.sync();
        startProgram();
        m_program->signal(SIGTERM);
        QCOMPARE(m_program->exitCode(), 0);
        settings.sync();
        QCOMPARE(settings.value("general.main_window_frame").toRect(), QRect(120, 90, 640, 480));
        QCOMPARE(settings.value("general.group_panel_width").toInt(), 222);
        QCOMPARE(settings.value("general.compact_view").toBool(), true);
    }
}

void tst_Program::sessionSaves()
{
    Process manager(QStringLiteral(MVR_SESSION_MANAGER));
    manager.start();
    m_environment.insert(u"SESSION_MANAGER"_s, manager.line());
    const QByteArray before = contentsOf(file(u"database.xml"_s));
    startProgram();
    QCOMPARE(manager.line(), u"registered"_s);
    QCOMPARE(manager.line(), u"saved"_s);
    QCOMPARE(contentsOf(file(u"database.xml"_s)), before);
    QVERIFY2(!QFile::exists(file(u"database.xml.bak"_s)), "nothing changed: nothing written");

    QVERIFY(QFile::remove(file(u"database.xml"_s)));
    manager.write("save\n");
    QCOMPARE(manager.line(), u"saved"_s);
    QVERIFY2(QFile::exists(file(u"database.xml"_s)), "written in any case");
    QVERIFY(namesOnDisk(TaskStorage::ms_inboxId).size() > 1);

    press({u"Down"_s, u"Delete"_s, u"alt+F4"_s});
    QTRY_VERIFY_WITH_TIMEOUT(visibleWindow(*m_program).isEmpty(), patienceMs);
    const QStringList old = namesOnDisk(TaskStorage::ms_inboxId);
    manager.write("save\n");
    QCOMPARE(manager.line(), u"saved"_s);
    QCOMPARE(namesOnDisk(TaskStorage::ms_inboxId), old.mid(1));
    QVERIFY2(m_program->isRunning(), "saving ends nothing");
}

void tst_Program::sessionEnds_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("title");
    const auto row = [](const char* name, const QString& entry, const QStringList& keys,
                        const QString& title) { QTest::newRow(name) << entry << keys << title; };
    const QString tab = u"Tab"_s;
    row("window alone", {}, {}, u"Mivora"_s);
    row("preferences", u"Preferences..."_s, {}, u"Mivora Preferences"_s);
    row("about", u"About"_s, {}, u"About Mivora"_s);
    row("library", u"About"_s, {tab, tab, u"Return"_s}, u"About Qt Library"_s);
    row("licence", u"About"_s, {tab, tab, tab, u"Return"_s}, u"Mivora License Agreement"_s);
    row("export", u"Export..."_s, {}, u"Export"_s);
    row("export to a file", u"Export..."_s, {u"Return"_s}, u"Export to"_s);
}

/// Whatever is open, all that was entered is on the disk, and the program is gone.
void tst_Program::sessionEnds()
{
    QFETCH(const QString, entry);
    QFETCH(const QStringList, keys);
    QFETCH(const QString, title);
    Process manager(QStringLiteral(MVR_SESSION_MANAGER));
    manager.start();
    m_environment.insert(u"SESSION_MANAGER"_s, manager.line());
    const TrayHost host;
    startProgram();
    QCOMPARE(manager.line(), u"registered"_s);
    QCOMPARE(manager.line(), u"saved"_s);
    press({u"Down"_s, u"Return"_s, u"ctrl+a"_s, u"x"_s, u"Return"_s});
    QTRY_VERIFY(host.hasItem());
    if (!entry.isEmpty()) {
        host.choose(entry);
        QTRY_VERIFY_WITH_TIMEOUT(!isActive(m_window) && !xdotool({u"getactivewindow"_s}).isEmpty(),
                                 patienceMs);
        if (!keys.isEmpty())
            press(keys);
    }
    QTRY_VERIFY_WITH_TIMEOUT(isActive(visibleWindow(*m_program, title)), patienceMs);
    QVERIFY(QFile::remove(file(u"settings.ini"_s)) && QFile::remove(file(u"metrics.xml"_s)));

    manager.write("shutdown\n");
    QCOMPARE(manager.line(), u"saved"_s);
    QCOMPARE(manager.line(), u"closed"_s);
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(contentsOf(file(u"log.txt"_s)), QByteArray());
    QVERIFY(files().contains(u"settings.ini"_s) && files().contains(u"metrics.xml"_s));
    QCOMPARE(namesOnDisk(TaskStorage::ms_inboxId).first(), u"x"_s);
}

void tst_Program::traySteersTheProgram()
{
    auto host = std::make_unique<TrayHost>();
    startProgram();
    host = nullptr;
    host = std::make_unique<TrayHost>();
    QTRY_VERIFY2(host->hasItem(), "a host that was started anew");

    for (const QStringList& goneBy :
         {QStringList{u"key"_s, u"alt+F4"_s}, {u"set_desktop"_s, u"1"_s}}) {
        xdotool(goneBy);
        QTRY_VERIFY_WITH_TIMEOUT(visibleWindow(*m_program).isEmpty(), patienceMs);
        host->click();
        QTRY_VERIFY_WITH_TIMEOUT(isActive(visibleWindow(*m_program)), patienceMs);
        m_window = visibleWindow(*m_program);
    }
    xdotool({u"windowminimize"_s, m_window});
    QTRY_VERIFY_WITH_TIMEOUT(isMinimised(m_window), patienceMs);
    host->choose(u"Preferences..."_s);
    const QString title = u"Mivora Preferences"_s;
    QTRY_VERIFY_WITH_TIMEOUT(isActive(visibleWindow(*m_program, title)), patienceMs);
    const QString dialog = visibleWindow(*m_program, title);
    host->choose(u"Preferences..."_s);
    host->choose(u"Show Mivora"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!visibleWindow(*m_program).isEmpty(), patienceMs);
    QTRY_VERIFY2_WITH_TIMEOUT(isActive(dialog), "not beneath the window", patienceMs);
    // English to Russian: the menu follows, and the choice is stored, though its dialog is open.
    press({u"Tab"_s, u"Tab"_s, u"Tab"_s, u"Down"_s});
    QTRY_VERIFY(host->menu().contains(u"Выход"_s));
    QCOMPARE(visibleWindow(*m_program, title + u"|Настройки Mivora"_s), dialog);
    press({u"Escape"_s});
    QTRY_VERIFY_WITH_TIMEOUT(isActive(m_window), patienceMs);

    press({u"Down"_s, u"Return"_s, u"ctrl+a"_s, u"x"_s});
    host->choose(u"Выход"_s);
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(namesOnDisk(TaskStorage::ms_inboxId).first(), u"x"_s);
    QVERIFY(contentsOf(file(u"settings.ini"_s)).contains("\ngeneral.ui_language=ru_RU\n"));
}

void tst_Program::firstStartSpeaksTheLanguageOfTheDesktop()
{
    m_environment.insert(u"LANGUAGE"_s, u"de:ru"_s);
    const TrayHost host;
    for (int start = 0; start < 2; ++start) {
        startProgram();
        QTRY_VERIFY(host.hasItem() && host.menu().contains(u"Показать Mivora"_s));
        m_program->signal(SIGTERM);
        QCOMPARE(m_program->exitCode(), 0);
        QVERIFY(contentsOf(file(u"settings.ini"_s)).contains("\ngeneral.ui_language=\n"));
    }
}

/// On a compositor that shows its screen, and takes its keys, in a window of the X server.
void tst_Program::waylandOnly()
{
    Process compositor(u"weston"_s);
    compositor.start(m_environment,
                     {u"--backend=x11-backend.so"_s, u"--use-pixman"_s, u"--shell=kiosk-shell.so"_s,
                      u"--socket=mivora"_s, u"--log="_s + m_home->filePath(u"weston.log"_s)});
    QTRY_VERIFY_WITH_TIMEOUT(
        xdotool({u"getactivewindow"_s, u"getwindowname"_s}).startsWith("Weston"_L1), patienceMs);
    m_environment.remove(u"DISPLAY"_s);
    m_environment.insert(u"WAYLAND_DISPLAY"_s, u"mivora"_s);
    m_environment.insert(u"WAYLAND_DEBUG"_s, u"1"_s);
    m_program = std::make_unique<Process>(QStringLiteral(MVR_PROGRAM));
    m_program->start(m_environment);
    static const QRegularExpression keysComeIn(u"wl_keyboard@\\d+\\.enter"_s);
    QString said;
    QTRY_VERIFY_WITH_TIMEOUT((said += m_program->errors()).contains(keysComeIn), patienceMs);
    press({u"ctrl+n"_s});
    xdotool({u"type"_s, u"by hand"_s});
    press({u"Return"_s, u"ctrl+q"_s});
    QCOMPARE(m_program->exitCode(), 0);
    m_program.reset();
    QVERIFY(namesOnDisk(TaskStorage::ms_inboxId).contains(u"by hand"_s));
}

void tst_Program::refusedDatabase_data()
{
    QTest::addColumn<QString>("database");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("newer") << u"damaged/version-newer.xml"_s
                           << QByteArray("Database version is not supported. "
                                         "(Reader ver - 1; Database ver - 2)");
    QTest::newRow("version is no number")
        << u"damaged/version-text.xml"_s << QByteArray("Database version is corrupted: \"abc\"");
    QTest::newRow("truncated") << u"damaged/truncated.xml"_s << QByteArray("Xml reader failed: ");
}

void tst_Program::refusedDatabase()
{
    QFETCH(QString, database);
    QFETCH(QByteArray, reason);
    putDatabase(database);
    const QByteArray before = contentsOf(file(u"database.xml"_s));
    startProgram();
    QVERIFY2(contentsOf(file(u"log.txt"_s)).contains(reason), "while the box is still open");

    // Somebody who tries again while the box is open is not made to wait.
    Process second(QStringLiteral(MVR_PROGRAM));
    second.start(m_environment);
    QCOMPARE(second.exitCode(), 0);

    press({u"Return"_s});
    QCOMPARE(m_program->exitCode(), 1);
    QCOMPARE(contentsOf(file(u"database.xml"_s)), before);
    QCOMPARE(files(), QStringList({u"database.xml"_s, u"log.txt"_s}));
}

void tst_Program::refusedFolder_data()
{
    QTest::addColumn<bool>("isLink");
    QTest::newRow("takes no lock") << false;
    QTest::newRow("is not mounted") << true;
}

void tst_Program::refusedFolder()
{
    QFETCH(const bool, isLink);
    const QString folder = m_home->filePath(u".Mivora"_s);
    QVERIFY(QDir(folder).removeRecursively());
    QFile inTheWay(folder);
    QVERIFY(isLink ? QFile::link(u"/nowhere/at/all"_s, folder)
                   : inTheWay.open(QIODevice::WriteOnly));
    startProgram();
    press({u"Return"_s});
    QCOMPARE(m_program->exitCode(), 1);
}

void tst_Program::signalEndsTheRefusal()
{
    putDatabase(u"damaged/version-newer.xml"_s);
    startProgram();
    m_program->signal(SIGTERM);
    QCOMPARE(m_program->exitCode(), 1);
}

void tst_Program::logThatCannotBeOpened()
{
    QVERIFY(QDir().mkpath(file(u"log.txt"_s)));
    startProgram();
    m_program->signal(SIGTERM);
    QCOMPARE(m_program->exitCode(), 0);
}

void tst_Program::editsAreOnTheDisk()
{
    const QStringList before = namesOnDisk(TaskStorage::ms_inboxId);
    QVERIFY(before.size() > 2);
    startProgram();
    press({u"Down"_s, u"Return"_s, u"ctrl+a"_s});
    xdotool({u"type"_s, u"Renamed by hand"_s});
    press({u"Return"_s});
    press({u"Down"_s, u"Delete"_s, u"ctrl+q"_s});
    QCOMPARE(m_program->exitCode(), 0);

    QStringList expected = before;
    expected[0] = u"Renamed by hand"_s;
    expected.removeAt(1);
    QCOMPARE(namesOnDisk(TaskStorage::ms_inboxId), expected);
    QVERIFY(files().contains(u"backups"_s));

    QVERIFY(QDir(file(u"backups"_s)).removeRecursively());
    QSettings(file(u"settings.ini"_s), QSettings::IniFormat).setValue("general.backups", false);
    startProgram();
    press({u"Down"_s, u"Delete"_s});
    expected.removeFirst();
    m_program->signal(SIGTERM);
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(namesOnDisk(TaskStorage::ms_inboxId), expected);
    QVERIFY(!files().contains(u"backups"_s));
    QVERIFY(contentsOf(file(u"settings.ini"_s)).contains("\ngeneral.backups=false\n"));
}

/// A display that dies takes the program with it, but nothing that was entered.
void tst_Program::displayGoesAway()
{
    const QStringList before = namesOnDisk(TaskStorage::ms_inboxId);
    Process display(u"Xvfb"_s);
    display.start(QProcessEnvironment::systemEnvironment(),
                  {u"-displayfd"_s, u"1"_s, u"-noreset"_s, u"-nolisten"_s, u"tcp"_s});
    m_environment.insert(u"DISPLAY"_s, u":"_s + display.line());
    m_program = std::make_unique<Process>(QStringLiteral(MVR_PROGRAM));
    m_program->start(m_environment);
    const auto focused = [this] {
        return output(u"xdotool"_s, {u"getwindowfocus"_s, u"getwindowname"_s}, m_environment);
    };
    QTRY_COMPARE_WITH_TIMEOUT(focused(), u"Mivora"_s, patienceMs);
    const QStringList keys{u"Down"_s, u"Return"_s, u"ctrl+a"_s, u"x"_s};
    output(u"xdotool"_s, QStringList{u"key"_s} + keys, m_environment);
    display.signal(SIGKILL);
    QCOMPARE(m_program->exitCode(), 1);
    QVERIFY(m_program->errors().contains("X11"_L1));
    QCOMPARE(namesOnDisk(TaskStorage::ms_inboxId), QStringList{u"x"_s} + before.mid(1));
    QVERIFY(contentsOf(file(u"settings.ini"_s)).contains("\nversion=0.2.608\n"));
}

QTEST_GUILESS_MAIN(tst_Program)
#include "tst_program.moc"
