// The user data folder: where it is, when it comes to be, and what is the program's own.
#include "app/base/PathHelper.h"
#include "tests/base/Files.h"
#include "tests/support/TemporaryHome.h"

#include <QDir>

#include <memory>

using namespace Qt::StringLiterals;

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
        for (const QString& made : {folder, m_home->filePath(u".Mivora"_s)})
            QVERIFY(!(QFile::permissions(made) & QFile::Permissions(0x0077)));
        QVERIFY(QDir(folder).removeRecursively());
        writeFile(folder.chopped(1), "in the way");
        QVERIFY(!PathHelper::makePath(PathHelper::databaseFile()));
    }
    void cutOffOnlyByALinkThatLeadsNowhere()
    {
        const QString entry = m_home->filePath(u".Mivora"_s);
        QVERIFY(QFile::link(m_home->filePath(u"gone"_s), m_home->filePath(u"other"_s)));
        for (const QString& target : {u"."_s, u"gone"_s, u"other"_s}) {
            QVERIFY(QFile::link(m_home->filePath(target), entry));
            QCOMPARE(PathHelper::isCutOff(PathHelper::databaseFile()), target != u".");
            QVERIFY(QFile::remove(entry));
        }
        QVERIFY(!QFile::exists(m_home->filePath(u"gone"_s)));
    }

    void ownFiles()
    {
        writeFile(m_home->filePath(u"real.xml"_s), "x");
        QVERIFY(QFile::link(m_home->filePath(u"real.xml"_s), PathHelper::databaseFile()));
        QVERIFY(QFile::link(PathHelper::databaseFile(), m_home->filePath(u"link"_s)));
        for (const QString& own : {u"link"_s, u"real.xml"_s, u"real.xml.bak"_s, u"real.xml.new_3"_s,
                                   u".Mivora/../.Mivora/User Data/backups/a.xml"_s})
            QVERIFY2(PathHelper::isOwnFile(m_home->filePath(own)), qPrintable(own));
        for (const QString& free : {u"real.xml.txt"_s, u"tasks.xml"_s, u".Mivora/tasks.xml"_s})
            QVERIFY2(!PathHelper::isOwnFile(m_home->filePath(free)), qPrintable(free));
    }

private:
    std::unique_ptr<TemporaryHome> m_home;
};

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
