// One copy per folder: who is first, how messages reach it, and what must not disturb it.
#include "app/InstanceLock.h"
#include "tests/app/Child.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
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

} // namespace

class tst_SingleInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path()));
        // What is made is for this user only, whatever the umask.
        ::umask(0);
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
            const QDir entries(folder.path(), {}, {}, QDir::Files | QDir::System);
            QCOMPARE(entries.count(), 2U);
            for (const QFileInfo& entry : entries.entryInfoList())
                QVERIFY2(!(entry.permissions() & QFile::Permissions(0x0077)), "others may use it");
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

private:
    const QTemporaryDir m_runtime;
};

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
