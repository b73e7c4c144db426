// One copy per folder: who is first, how messages reach it, and what must not disturb it.
#include "app/InstanceLock.h"
#include "app/QtSingleApplication.h"
#include "tests/app/Child.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// `runtime`: a runtime folder other than this process's.
std::unique_ptr<Child> startCopy(const QString& folder, const QString& message = u"show"_s,
                                 const QString& runtime = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!runtime.isEmpty())
        environment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    return std::make_unique<Child>(QStringLiteral(MVR_FRAME_CHILD), QStringList{message, folder},
                                   environment);
}

/// What the copy turned out to be.
QString role(Child& child)
{
    return child.line() == "starting"_L1 ? child.line() : u"did not start"_s;
}

/// A copy that has to become the first in its folder.
std::unique_ptr<Child> startFirst(const QString& folder)
{
    auto child = startCopy(folder);
    if (role(*child) != "first"_L1)
        QTest::qFail("not the first", __FILE__, __LINE__);
    return child;
}

QFileInfoList entriesOf(const QString& folder, const QString& pattern = u"*"_s)
{
    return QDir(folder).entryInfoList({pattern}, QDir::AllEntries | QDir::System | QDir::Hidden |
                                                     QDir::NoDotAndDotDot);
}

QString lockIn(const QString& folder)
{
    return entriesOf(folder, u"*.lock"_s).value(0).filePath();
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
        QFile lock(lockIn(m_folder));
        QVERIFY(lock.open(QIODevice::ReadOnly));
        m_address = QFile::decodeName(lock.readAll().trimmed());
        QVERIFY(QFileInfo::exists(m_address));
    }

    void message()
    {
        const QString text = u" Показать  見せる \U0001F600 "_s + QString(60000, u'x');
        QSignalSpy received(&m_app, &QtSingleApplication::messageReceived);
        const auto second = startCopy(m_folder, text);
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(received.first().first().toString(), text);
        QCOMPARE(role(*second), u"second sent"_s);
        QCOMPARE(second->exitCode(), 0);
    }

    void strangers_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("thrownOut");
        QTest::newRow("half a message") << header(mark, 100) + "show" << false;
        QTest::newRow("too long") << header(mark, 0xffffffff) + "show" << true;
        QTest::newRow("flood") << QByteArray(4000000, 'x') << true;
    }
    void strangers()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, thrownOut);
        QSignalSpy received(&m_app, &QtSingleApplication::messageReceived);
        QLocalSocket stranger;
        stranger.connectToServer(m_address);
        QTRY_COMPARE(stranger.state(), QLocalSocket::ConnectedState);
        stranger.write(bytes);
        stranger.flush();
        if (thrownOut)
            QTRY_COMPARE(stranger.state(), QLocalSocket::UnconnectedState);

        const auto second = startCopy(m_folder);
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(role(*second), u"second sent"_s);
        QCOMPARE(stranger.state() == QLocalSocket::ConnectedState, !thrownOut);
    }

    void simultaneousStarts()
    {
        const QTemporaryDir folder;
        // The rounds after the first begin with what a killed copy leaves behind.
        for (int round = 0; round < 5; ++round) {
            std::vector<std::unique_ptr<Child>> children;
            for (int i = 0; i < 8; ++i)
                children.push_back(startCopy(folder.path()));
            int firsts = 0;
            int sent = 0;
            for (const auto& child : children) {
                const QString found = role(*child);
                firsts += found == "first"_L1;
                sent += found == "second sent"_L1;
            }
            QCOMPARE(firsts, 1);
            QCOMPARE(sent, 7);
        }
    }

    void startWhileTheFirstIsEnding()
    {
        const QTemporaryDir folder;
        const auto first = startFirst(folder.path());
        first->command(u"quit"_s);
        QCOMPARE(first->line(), u"ending"_s);
        QVERIFY(entriesOf(folder.path(), u"*.socket"_s).isEmpty());

        const auto next = startCopy(folder.path());
        QCOMPARE(next->line(), u"starting"_s);
        first->command(u"go"_s);
        QCOMPARE(first->exitCode(), 0);
        QCOMPARE(next->line(), u"first"_s);
        const auto second = startCopy(folder.path());
        QCOMPARE(role(*second), u"second sent"_s);
    }

    void onlyTheUserGetsIn()
    {
        const QTemporaryDir folder;
        const mode_t before = ::umask(0);
        const auto first = startFirst(folder.path());
        ::umask(before);
        QCOMPARE(entriesOf(folder.path()).size(), 2);
        const QFile::Permissions forOthers = QFile::Permissions(0x0077);
        for (const QFileInfo& entry : entriesOf(folder.path()))
            QVERIFY(!(entry.permissions() & forOthers));
    }

    void longFolderFromAnotherSession()
    {
        const QTemporaryDir root;
        const QTemporaryDir otherRuntime;
        const QString folder = root.filePath(QString(150, u'd'));
        QVERIFY(QDir().mkpath(folder));
        const auto first = startFirst(folder);
        QCOMPARE(entriesOf(folder).size(), 1);

        const auto second = startCopy(folder, u"show"_s, otherRuntime.path());
        QCOMPARE(role(*second), u"second sent"_s);
        QCOMPARE(first->line(), u"message show"_s);
    }

    void lockFileThatCannotBeUsed_data()
    {
        QTest::addColumn<bool>("before");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("by the first copy") << true << true;
        QTest::newRow("by the second one") << false << true;
        QTest::newRow("because it was deleted") << false << false;
    }
    /// Whichever runtime folder they have.
    void lockFileThatCannotBeUsed()
    {
        QFETCH(const bool, before);
        QFETCH(const bool, replaced);
        const QTemporaryDir folder;
        const QTemporaryDir otherRuntime;
        startFirst(folder.path());
        const QString path = lockIn(folder.path());
        const auto replace = [&] {
            QVERIFY(QFile::remove(path));
            QVERIFY(!replaced || QDir().mkdir(path));
        };
        if (before)
            replace();
        const auto first = startFirst(folder.path());
        if (!before)
            replace();
        const auto second = startCopy(folder.path(), u"show"_s, otherRuntime.path());
        QCOMPARE(role(*second), u"second sent"_s);
    }

    /// What other copies may do to a holder whose file or folder goes away.
    void holderFollowsItsFolder()
    {
        using EState = InstanceLock::EState;
        const QTemporaryDir root;
        const QString folder = root.filePath(u"data"_s);
        const QString path = folder + u"/lock"_s;
        for (const auto mode : {InstanceLock::EFolder::exclusive, InstanceLock::EFolder::shared}) {
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

            QVERIFY(QDir(folder).removeRecursively() && QDir().mkdir(folder));
            InstanceLock other(path, mode);
            QCOMPARE(other.tryLock(), EState::held);
            QVERIFY(!holder.renew());
            QVERIFY(QDir(folder).removeRecursively());
            QVERIFY(QDir(root.filePath(u"moved"_s)).removeRecursively());
        }
        QVERIFY(QDir().mkpath(folder));
        InstanceLock holder(path, InstanceLock::EFolder::shared);
        QVERIFY(holder.tryLock() == EState::held && QFile::remove(path));
        InstanceLock other(path, InstanceLock::EFolder::shared);
        QVERIFY(other.tryLock() == EState::held && !holder.renew());
    }

    void oneCopyPerFileThroughAnyLink()
    {
        const QTemporaryDir root;
        const QDir dir(root.path());
        const auto start = [&dir](const QString& folder, const QString& file) {
            const QString link = dir.filePath(folder + u"/database.xml"_s);
            dir.mkdir(folder);
            QFile::link(dir.filePath(file), link);
            return std::make_unique<Child>(QStringLiteral(MVR_FRAME_CHILD),
                                           QStringList{u"show"_s, dir.filePath(folder), link});
        };
        QVERIFY(dir.mkdir(u"real"_s));
        std::vector<std::unique_ptr<Child>> firsts;
        for (const QString& name : {u"database.xml"_s, u"tasks.xml"_s}) {
            QFile file(dir.filePath(u"real/"_s + name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            firsts.push_back(start(name + u"-1"_s, u"real/"_s + name));
            QCOMPARE(role(*firsts.back()), u"first"_s);
            const auto second = start(name + u"-2"_s, u"real/"_s + name);
            QCOMPARE(role(*second), u"second sent"_s);
            QCOMPARE(firsts.back()->line(), u"message show"_s);
        }
    }

private:
    QtSingleApplication& m_app;
    QString m_folder;
    QString m_address;
};

int main(int argc, char** argv)
{
    const QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
    const QTemporaryDir folder;
    QtSingleApplication app(u"test-copy"_s, argc, argv, folder.path());
    tst_SingleInstance test(app, folder.path());
    return QTest::qExec(&test, argc, argv);
}

#include "tst_singleinstance.moc"
