// The user data folder: where it is, when it comes to be, and what is the program's own.
#include "app/base/PathHelper.h"
#include "tests/base/Files.h"
#include "tests/support/TemporaryHome.h"

#include <QDir>

using namespace Qt::StringLiterals;

class TestPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void userFolder()
    {
        const TemporaryHome home;
        const QString folder = home.filePath(u".Mivora/User Data/"_s);
        QCOMPARE(PathHelper::getPath(PathHelper::UserDataFolder, false), folder);
        QVERIFY(!QFile::exists(home.filePath(u".Mivora"_s)));
        QCOMPARE(PathHelper::databaseFile(), folder + u"database.xml"_s);
        QCOMPARE(PathHelper::settingsFile(), folder + u"settings.ini"_s);
        for (const QString& made : {folder, home.filePath(u".Mivora"_s)})
            QVERIFY(!(QFile::permissions(made) & QFile::Permissions(0x0077)));

        writeFile(home.filePath(u"real.xml"_s), "x");
        QVERIFY(QFile::link(home.filePath(u"real.xml"_s), PathHelper::databaseFile()));
        QVERIFY(QFile::link(PathHelper::databaseFile(), home.filePath(u"link"_s)));
        for (const QString& own : {u"link"_s, u"real.xml"_s, u"real.xml.bak"_s, u"real.xml.new_3"_s,
                                   u".Mivora/../.Mivora/User Data/backups/a.xml"_s})
            QVERIFY2(PathHelper::isOwnFile(home.filePath(own)), qPrintable(own));
        for (const QString& free : {u"real.xml.txt"_s, u"tasks.xml"_s, u".Mivora/tasks.xml"_s})
            QVERIFY2(!PathHelper::isOwnFile(home.filePath(free)), qPrintable(free));

        QVERIFY(QDir(folder).removeRecursively());
        writeFile(folder.chopped(1), "in the way");
        QVERIFY(!PathHelper::makePath(PathHelper::databaseFile()));
    }
};

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
