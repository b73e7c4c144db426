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

} // namespace

class TestPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<TemporaryHome>(); }
    void cleanup() { m_home.reset(); }

    void userFolder()
    {
        const QString folder = m_home->filePath(u".Mivora/User Data/"_s);
        QCOMPARE(PathHelper::getPath(PathHelper::UserDataFolder, false), folder);
        QVERIFY(!QFile::exists(m_home->filePath(u".Mivora"_s)));
        QCOMPARE(PathHelper::databaseFile(), folder + u"database.xml"_s);
        QCOMPARE(PathHelper::settingsFile(), folder + u"settings.ini"_s);
        QVERIFY(QDir(folder).exists());
        for (const QString& made : {folder, m_home->filePath(u".Mivora"_s)})
            QVERIFY(!(QFile::permissions(made) & QFile::Permissions(0x0077)));
        QVERIFY(QDir(folder).isEmpty());
        QVERIFY(QDir(folder).mkdir(u"database.xml"_s) && !PathHelper::isDataFolderValid(folder));
        QVERIFY(QDir(folder).rmdir(u"database.xml"_s) && !PathHelper::isDataFolderValid(folder));
        write(folder + u"database.xml"_s, "x");
        QVERIFY(PathHelper::isDataFolderValid(folder));
        QVERIFY(PathHelper::makePath(PathHelper::databaseFile()));
        QVERIFY(QDir(folder).removeRecursively());
        write(folder.chopped(1), "in the way");
        QVERIFY(!PathHelper::makePath(PathHelper::databaseFile()));
    }
    void cutOffOnlyByALinkThatLeadsNowhere_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("cutOff");
        QTest::newRow("nothing there yet") << u""_s << u""_s << false;
        QTest::newRow("volume that is there") << u".Mivora"_s << u"."_s << false;
        QTest::newRow("volume that is not") << u".Mivora"_s << u"gone"_s << true;
        QTest::newRow("last folder") << u".Mivora/User Data"_s << u"gone/deep"_s << true;
        QTest::newRow("through another link") << u".Mivora"_s << u"other"_s << true;
    }
    void cutOffOnlyByALinkThatLeadsNowhere()
    {
        QFETCH(const QString, entry);
        QFETCH(const QString, target);
        QVERIFY(QFile::link(m_home->filePath(u"gone"_s), m_home->filePath(u"other"_s)));
        if (!entry.isEmpty()) {
            QVERIFY(PathHelper::makePath(m_home->filePath(entry)));
            QVERIFY(QFile::link(m_home->filePath(target), m_home->filePath(entry)));
        }
        QTEST(PathHelper::isCutOff(PathHelper::databaseFile()), "cutOff");
        QVERIFY(!QFile::exists(m_home->filePath(u"gone"_s)));
    }

    void ownFiles()
    {
        write(m_home->filePath(u"real.xml"_s), "x");
        QVERIFY(QFile::link(m_home->filePath(u"real.xml"_s), PathHelper::databaseFile()));
        QVERIFY(QFile::link(PathHelper::databaseFile(), m_home->filePath(u"link"_s)));
        for (const QString& own : {u"link"_s, u"real.xml"_s, u"real.xml.bak"_s, u"real.xml.new_3"_s,
                                   u".Mivora/../.Mivora/User Data/backups/a.xml"_s})
            QVERIFY2(PathHelper::isOwnFile(m_home->filePath(own)), qPrintable(own));
        for (const QString& free : {u"real.xml.txt"_s, u"tasks.xml"_s, u".Mivora/tasks.xml"_s})
            QVERIFY2(!PathHelper::isOwnFile(m_home->filePath(free)), qPrintable(free));
    }

    void importKeepsWhatIsThere()
    {
        const QString from = m_home->filePath(u"from"_s);
        const QString to = m_home->filePath(u"to/deep"_s);
        QVERIFY(PathHelper::makePath(from + u'/'));
        for (const QString& name : {u"database.xml"_s, u"settings.ini"_s, u"log.txt"_s})
            write(from + u'/' + name, "imported");
        QVERIFY(!PathHelper::importData(from, to));
        QCOMPARE(QDir(to).entryList(QDir::Files),
                 QStringList({u"database.xml"_s, u"settings.ini"_s}));
        QCOMPARE(read(to + u"/settings.ini"_s), QByteArray("imported"));

        write(to + u"/database.xml"_s, "mine");
        QVERIFY(!PathHelper::importData(from, to));
        QCOMPARE(read(to + u"/database.xml"_s), QByteArray("mine"));
    }

private:
    std::unique_ptr<TemporaryHome> m_home;
};

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
