#include "app/base/PathHelper.h"

#include "app/base/ProductHelper.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {
QString databaseName()
{
    return u"database.xml"_s;
}
QString settingsName()
{
    return u"settings.ini"_s;
}

QString userFile(const QString& name)
{
    return PathHelper::getPath(PathHelper::UserDataFolder, true) + name;
}

QString inFolder(const QString& folder, const QString& name)
{
    return QDir(folder).filePath(name);
}
} // namespace

QString PathHelper::executablePath()
{
    return QCoreApplication::applicationFilePath();
}

bool PathHelper::makePath(const QString& path)
{
    const QDir folder = QFileInfo(path).absoluteDir();
    return folder.exists() || folder.mkpath(u"."_s);
}

QString PathHelper::getPath(EPath kind, bool create)
{
    if (kind != UserDataFolder)
        return {};
    QString path = QDir::fromNativeSeparators(QDir::homePath() + u"/."_s +
                                              ProductHelper::productName() + u"/User Data/"_s);
    if (!path.endsWith(u'/'))
        path += u'/';
    if (create)
        makePath(path);
    return path;
}

QString PathHelper::databaseFile()
{
    return userFile(databaseName());
}

QString PathHelper::archiveFile()
{
    return userFile(u"archived.xml"_s);
}

QString PathHelper::trashFile()
{
    return userFile(u"trash.xml"_s);
}

QString PathHelper::settingsFile()
{
    return userFile(settingsName());
}

QString PathHelper::metricsFile()
{
    return userFile(u"metrics.xml"_s);
}

QString PathHelper::logFile()
{
    return userFile(u"log.txt"_s);
}

bool PathHelper::isDataFolderValid(const QString& folder)
{
    return QFileInfo(inFolder(folder, databaseName())).isFile();
}

bool PathHelper::importData(const QString& fromFolder, const QString& toFolder)
{
    const QString target = QDir(toFolder).absolutePath() + u'/';
    if (!makePath(target))
        return false;
    for (const QString& name : {databaseName(), settingsName()}) {
        const QString from = inFolder(fromFolder, name);
        const QString to = inFolder(target, name);
        if (QFile::exists(from) && !QFile::exists(to))
            QFile::copy(from, to);
    }
    return false;
}
