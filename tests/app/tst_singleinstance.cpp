// One copy per folder: who is first, how messages reach it, and what must not disturb it.
#include "app/InstanceLock.h"
#include "app/QtSingleApplication.h"
#include "tests/app/Child.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QMap>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Copy = std::unique_ptr<Child>;

const QString text = u"Показать  見せる \U0001F600 "_s + QString(8000, u'x');

/// `runtime`: a runtime folder other than this process's.
Copy startCopy(const QStringList& arguments, const QString& runtime = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!runtime.isEmpty())
        environment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    return std::make_unique<Child>(QStringLiteral(MVR_FRAME_CHILD), QStringList{text} + arguments,
                                   environment);
}

/// What the copy turned out to be.
QString role(const Copy& copy)
{
    return copy->line() == "starting"_L1 ? copy->line() : u"did not start"_s;
}

/// A copy that has to become the first in its folder.
Copy startFirst(const QStringList& arguments)
{
    auto copy = startCopy(arguments);
    if (role(copy) != "first"_L1)
        QTest::qFail("not the first", __FILE__, __LINE__);
    return copy;
}

QString lockIn(const QString& folder)
{
    return folder + u'/' + QDir(folder).entryList({u"*.lock"_s}).value(0);
}

QByteArray header(quint32 mark, quint32 size)
{
    QByteArray bytes;
    QDataStream(&bytes, QIODevice::WriteOnly) << mark << size;
    return bytes;
}

constexpr quint32 mark = 0x6d767231;

} // namespace

class tst_SingleInstance : public QObject
{
    Q_OBJECT

public:
    tst_SingleInstance(QtSingleApplication& app, const QString& folder)
        : m_app(app)
        , m_folder(folder)
    {
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(!m_app.isRunning());
        QVERIFY2(!m_app.sendMessage(u"show"_s, 100), "the first copy has nobody to send to");
        const QFileInfoList entries = QDir(m_folder).entryInfoList(QDir::Files | QDir::System);
        QCOMPARE(entries.size(), 2);
        for (const QFileInfo& entry : entries)
            QVERIFY2(!(entry.permissions() & QFile::Permissions(0x0077)), "others may use it");
        QFile lock(lockIn(m_folder));
        QVERIFY(lock.open(QIODevice::ReadOnly));
        m_address = QFile::decodeName(lock.readAll().trimmed());
    }

    void strangers()
    {
        const QByteArrayList all{header(mark, 100) + "show", header(mark, 0xffffffff) + "show",
                                 QByteArray(4000000, 'x')};
        for (const QByteArray& bytes : all) {
            QSignalSpy received(&m_app, &QtSingleApplication::messageReceived);
            QLocalSocket stranger;
            stranger.connectToServer(m_address);
            QTRY_COMPARE(stranger.state(), QLocalSocket::ConnectedState);
            stranger.write(bytes);
            stranger.flush();
            // All but the one that may still send the rest.
            const bool isThrownOut = !bytes.startsWith(header(mark, 100));
            if (isThrownOut)
                QTRY_COMPARE(stranger.state(), QLocalSocket::UnconnectedState);
            const auto second = startCopy({m_folder});
            QTRY_COMPARE(received.size(), 1);
            QCOMPARE(received.first().first().toString(), text);
            QCOMPARE(role(second), u"second sent"_s);
            QCOMPARE(stranger.state() == QLocalSocket::ConnectedState, !isThrownOut);
        }
    }

    void simultaneousStarts()
    {
        const QTemporaryDir folder;
        // The rounds after the first begin with what a killed copy leaves behind.
        for (int round = 0; round < 5; ++round) {
            std::vector<Copy> copies(8);
            for (Copy& copy : copies)
                copy = startCopy({folder.path()});
            QMap<QString, int> roles;
            for (const Copy& copy : copies)
                ++roles[role(copy)];
            QCOMPARE(roles, (QMap<QString, int>{{u"first"_s, 1}, {u"second sent"_s, 7}}));
        }
    }

    void startWhileTheFirstIsEnding()
    {
        const QTemporaryDir folder;
        const auto first = startFirst({folder.path()});
        first->command(u"quit"_s);
        QCOMPARE(first->line(), u"ending"_s);
        const QDir entries(folder.path(), u"*.socket"_s, {}, QDir::AllEntries | QDir::System);
        QVERIFY2(entries.entryList().isEmpty(), "it does not listen any more");

        const auto next = startCopy({folder.path()});
        QCOMPARE(next->line(), u"starting"_s);
        first->command(u"go"_s);
        QCOMPARE(first->exitCode(), 0);
        QCOMPARE(next->line(), u"first"_s);
        QCOMPARE(role(startCopy({folder.path()})), u"second sent"_s);
    }

    /// Whichever runtime folder they have.
    void copiesOfOtherSessionsFindTheFirst_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("no room for the socket") << QString(150, u'd');
        QTest::newRow("lock file useless to the first") << u"d"_s;
        QTest::newRow("lock file useless to the second") << u"d"_s;
        QTest::newRow("lock file deleted") << u"d"_s;
    }
    void copiesOfOtherSessionsFindTheFirst()
    {
        QFETCH(QString, folder);
        const QByteArray what = QTest::currentDataTag();
        const QTemporaryDir root;
        const QTemporaryDir otherRuntime;
        folder = root.filePath(folder);
        QVERIFY(QDir().mkpath(folder));
        startFirst({folder});
        const QString path = lockIn(folder);
        const auto replace = [&] { QVERIFY(QFile::remove(path) && QDir().mkdir(path)); };
        if (what.endsWith("useless to the first"))
            replace();
        const auto first = startFirst({folder});
        if (what.endsWith("useless to the second"))
            replace();
        if (what.endsWith("deleted"))
            QVERIFY(QFile::remove(path));
        QCOMPARE(role(startCopy({folder}, otherRuntime.path())), u"second sent"_s);
        QCOMPARE(first->line(), u"message "_s + text);
    }

    /// What other copies may do to a holder whose file or folder goes away.
    void holderFollowsItsFolder()
    {
        using EState = InstanceLock::EState;
        for (const auto mode : {InstanceLock::EFolder::exclusive, InstanceLock::EFolder::shared}) {
            const QTemporaryDir root;
            const QString folder = root.filePath(u"data"_s);
            const QString path = folder + u"/lock"_s;
            QVERIFY(QDir().mkpath(folder));
            InstanceLock holder(path, mode);
            QVERIFY(holder.tryLock() == EState::held && holder.renew());
            const auto othersMay = [&] { return InstanceLock(path, mode).tryLock(); };
            QVERIFY(QFile::remove(path) && holder.renew());
            QCOMPARE(othersMay(), EState::busy);
            QVERIFY(QDir().rename(folder, root.filePath(u"moved"_s)));
            QVERIFY(!holder.renew());
            QVERIFY(QDir().mkdir(folder) && holder.renew());
            QCOMPARE(othersMay(), EState::busy);

            // Another copy was faster.
            const bool isFile = mode == InstanceLock::EFolder::shared;
            QVERIFY(isFile ? QFile::remove(path) : QDir(folder).removeRecursively());
            QVERIFY(isFile || QDir().mkdir(folder));
            InstanceLock other(path, mode);
            QCOMPARE(other.tryLock(), EState::held);
            QVERIFY(!holder.renew());
        }
    }

    void oneCopyPerFileThroughAnyLink()
    {
        const QTemporaryDir root;
        const QDir dir(root.path());
        QVERIFY(dir.mkdir(u"real"_s));
        std::vector<Copy> firsts;
        for (const QString& name : {u"database.xml"_s, u"tasks.xml"_s}) {
            const QString real = dir.filePath(u"real/"_s + name);
            QVERIFY(QFile(real).open(QIODevice::WriteOnly));
            QList<QStringList> arguments;
            for (const QString& folder : QStringList{name + u"-1"_s, name + u"-2"_s}) {
                const QString link = dir.filePath(folder + u"/database.xml"_s);
                QVERIFY(dir.mkdir(folder) && QFile::link(real, link));
                arguments += {dir.filePath(folder), link};
            }
            firsts.push_back(startFirst(arguments.first()));
            QCOMPARE(role(startCopy(arguments.last())), u"second sent"_s);
            QCOMPARE(firsts.back()->line(), u"message "_s + text);
        }
    }

private:
    QtSingleApplication& m_app;
    QString m_folder;
    QString m_address;
};

int main(int argc, char** argv)
{
    // What is made is for this user only, whatever the umask.
    ::umask(0);
    const QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
    const QTemporaryDir folder;
    QtSingleApplication app(u"test-copy"_s, argc, argv, folder.path());
    tst_SingleInstance test(app, folder.path());
    return QTest::qExec(&test, argc, argv);
}

#include "tst_singleinstance.moc"
