// Where the program keeps its per-user files.
#pragma once

#include <QString>

/// Paths of the user data folder and the files in it. Stateless; any thread.
class PathHelper
{
public:
    enum EPath : int
    {
        UserDataFolder = 3
    };

    /// Path of the running program's file.
    [[nodiscard]] static QString executablePath();

    /// Creates the folder part of `path` with all missing parents, for this user only; a path that
    /// ends in "/" names the folder itself. Returns whether the folder exists afterwards.
    static bool makePath(const QString& path);

    /// The folder of the given kind, ending in "/"; empty for an unknown kind. Creates the folder
    /// when `create` is set; a failure to do so shows when a file in it is opened.
    [[nodiscard]] static QString getPath(EPath kind, bool create);

    // Each of these creates the user data folder when it is missing.
    [[nodiscard]] static QString databaseFile();
    [[nodiscard]] static QString archiveFile();
    [[nodiscard]] static QString trashFile();
    [[nodiscard]] static QString settingsFile();
    [[nodiscard]] static QString metricsFile();
    [[nodiscard]] static QString logFile();

    /// Whether `folder` holds a database: a regular file, not a folder of that name.
    [[nodiscard]] static bool isDataFolderValid(const QString& folder);

    /// Where `path` leads when links are followed; what does not exist yet keeps its name.
    [[nodiscard]] static QString realPath(const QString& path);

    /// Whether one of the folders on the way to `path` is a link that leads nowhere, such as one to
    /// a volume that is not mounted: the file may exist although it is not there.
    [[nodiscard]] static bool isCutOff(const QString& path);

    /// Whether a file at `path` would be one of the program's own: in the user data folder, or the
    /// database that a link there leads to, with its backup and temporary files.
    [[nodiscard]] static bool isOwnFile(const QString& path);

    /// Copies the database and the settings of an older data folder into `toFolder`; what is
    /// already there stays. Always returns false, also after a complete copy: not a failure report.
    static bool importData(const QString& fromFolder, const QString& toFolder);
};
