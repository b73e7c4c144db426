#include "app/base/PathHelper.h"

#include "app/base/ProductHelper.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

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

/// By what lies there, not by name: a folder may be mounted in two places.
bool isSameFolder(const QString& one, const QString& other)
{
    struct stat first = {};
    struct stat second = {};
    return ::stat(QFile::encodeName(one).constData(), &first) == 0 &&
           ::stat(QFile::encodeName(other).constData(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
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
    // A link to what is not there yet.
    const QFileInfo target(file.symLinkTarget());
    if (file.isSymLink() && !target.isSymLink())
        return realPath(target.filePath());
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
    const QFileInfo file(realPath(path));
    const QFileInfo database(realPath(databaseFile()));
    const QString name = file.fileName();
    const QString own = database.fileName();
    if (isSameFolder(file.absolutePath(), database.absolutePath()) &&
        (name == own || name.startsWith(own + u".bak"_s) || name.startsWith(own + u".new"_s) ||
         name.startsWith(u"instance-"_s)))
        return true;
    const QString dataFolder = getPath(UserDataFolder, false);
    for (QString folder = file.absolutePath(); !QDir(folder).isRoot();
         folder = QFileInfo(folder).absolutePath()) {
        if (isSameFolder(folder, dataFolder))
            return true;
    }
    return false;
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
