// The user data folder: where it is, when it comes to be, and what is imported into it.
#include "app/base/PathHelper.h"
#include "tests/support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

using PathFunction = QString (*)();

} // namespace

class TestPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<TemporaryHome>(); }
    void cleanup() { m_home.reset(); }

    void userFiles_data()
    {
        QTest::addColumn<PathFunction>("path");
        QTest::addColumn<QString>("name");
        QTest::newRow("database") << &PathHelper::databaseFile << u"database.xml"_s;
        QTest::newRow("archive") << &PathHelper::archiveFile << u"archived.xml"_s;
        QTest::newRow("trash") << &PathHelper::trashFile << u"trash.xml"_s;
        QTest::newRow("settings") << &PathHelper::settingsFile << u"settings.ini"_s;
        QTest::newRow("metrics") << &PathHelper::metricsFile << u"metrics.xml"_s;
        QTest::newRow("log") << &PathHelper::logFile << u"log.txt"_s;
    }
    void userFiles()
    {
        QFETCH(PathFunction, path);
        QFETCH(QString, name);
        const QString folder = m_home->filePath(u".Mivora/User Data/"_s);
        QCOMPARE(path(), folder + name);
        QVERIFY(QFileInfo(folder).isDir());
        QVERIFY(!QFile::exists(folder + name));
    }

    void folderIsMadeOnRequest()
    {
        const QString folder = PathHelper::getPath(PathHelper::UserDataFolder, false);
        QCOMPARE(folder, m_home->filePath(u".Mivora/User Data/"_s));
        QCOMPARE(PathHelper::getPath(PathHelper::EPath{1}, true), QString());
        QVERIFY(!QFile::exists(m_home->filePath(u".Mivora"_s)));
    }
    void folderThatCannotBeMade()
    {
        write(m_home->filePath(u".Mivora"_s), "in the way");
        QCOMPARE(PathHelper::databaseFile(), m_home->filePath(u".Mivora/User Data/database.xml"_s));
        QVERIFY(!PathHelper::makePath(PathHelper::databaseFile()));
    }

    void makePath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("made");
        QTest::newRow("of a file") << u"a/b/c"_s << u"a/b"_s;
        QTest::newRow("of a folder") << u"a/b/c/"_s << u"a/b/c"_s;
        QTest::newRow("there") << u"file"_s << u"."_s;
    }
    void makePath()
    {
        QFETCH(QString, path);
        QFETCH(QString, made);
        QVERIFY(PathHelper::makePath(m_home->filePath(path)));
        QVERIFY(QFileInfo(m_home->filePath(made)).isDir());
        QVERIFY(!QFile::exists(m_home->filePath(u"a/b/c/d"_s)));
        QCOMPARE(QFile::exists(m_home->filePath(u"a/b/c"_s)), path.endsWith(u'/'));
    }

    void validFolder()
    {
        const QString folder = m_home->path();
        QVERIFY(!PathHelper::isDataFolderValid(folder));
        QVERIFY(QDir(folder).mkdir(u"database.xml"_s));
        QVERIFY(!PathHelper::isDataFolderValid(folder));
        QVERIFY(QDir(folder).rmdir(u"database.xml"_s));
        write(m_home->filePath(u"database.xml"_s), "x");
        QVERIFY(PathHelper::isDataFolderValid(folder));
        QVERIFY(PathHelper::isDataFolderValid(folder + u'/'));
    }

    void import_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QByteArray>("present");
        QTest::newRow("new folder") << u"to/deep/"_s << QByteArray();
        QTest::newRow("new folder, no slash") << u"to/deep"_s << QByteArray();
        QTest::newRow("database there") << u"to/"_s << QByteArray("mine");
    }
    void import()
    {
        QFETCH(QString, target);
        QFETCH(QByteArray, present);
        const QString from = m_home->filePath(u"from"_s);
        const QString to = m_home->filePath(target);
        for (const QString& name : {u"database.xml"_s, u"settings.ini"_s, u"metrics.xml"_s,
                                    u"log.txt"_s, u"archived.xml"_s, u"trash.xml"_s}) {
            QVERIFY(PathHelper::makePath(from + u'/'));
            write(from + u'/' + name, name.toUtf8());
        }
        if (!present.isEmpty()) {
            QVERIFY(PathHelper::makePath(to));
            write(to + u"database.xml"_s, present);
        }

        QVERIFY(!PathHelper::importData(from, to));
        QCOMPARE(QDir(to).entryList(QDir::Files),
                 QStringList({u"database.xml"_s, u"settings.ini"_s}));
        QCOMPARE(read(to + u"/database.xml"_s),
                 present.isEmpty() ? QByteArray("database.xml") : present);
        QCOMPARE(read(to + u"/settings.ini"_s), QByteArray("settings.ini"));
    }
    void importIntoNowhere()
    {
        write(m_home->filePath(u"database.xml"_s), "x");
        write(m_home->filePath(u"file"_s), "in the way");
        QVERIFY(!PathHelper::importData(m_home->path(), m_home->filePath(u"file/to/"_s)));
        QCOMPARE(read(m_home->filePath(u"file"_s)), QByteArray("in the way"));
    }

private:
    std::unique_ptr<TemporaryHome> m_home;
};

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
