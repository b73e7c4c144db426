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

/// Creates a folder and what is missing above it, for this user only.
bool makeFolder(const QString& path)
{
    if (QDir(path).exists())
        return true;
    const QString parent = QFileInfo(path).absolutePath();
    constexpr QFile::Permissions userOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    // Another program may be making the same folder.
    return parent != path && makeFolder(parent) &&
           (QDir().mkdir(path, userOnly) || QDir(path).exists());
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
    return makeFolder(QDir::cleanPath(QFileInfo(path).absolutePath()));
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

QString PathHelper::realPath(const QString& path)
{
    const QFileInfo file(path);
    const QString canonical = file.canonicalFilePath();
    if (!canonical.isEmpty())
        return canonical;
    const QString folder = QFileInfo(file.absolutePath()).canonicalFilePath();
    return folder.isEmpty() ? file.absoluteFilePath() : QDir(folder).filePath(file.fileName());
}

bool PathHelper::isCutOff(const QString& path)
{
    QString folder = QFileInfo(path).absolutePath();
    while (!QFileInfo::exists(folder)) {
        if (QFileInfo(folder).isSymLink())
            return true;
        const QString parent = QFileInfo(folder).absolutePath();
        if (parent == folder)
            return false;
        folder = parent;
    }
    return false;
}

bool PathHelper::isOwnFile(const QString& path)
{
    const QString file = realPath(path);
    if (file.startsWith(realPath(getPath(UserDataFolder, false)) + u'/'))
        return true;
    const QString database = realPath(databaseFile());
    return file == database || file.startsWith(database + u".bak"_s) ||
           file.startsWith(database + u".new"_s);
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
