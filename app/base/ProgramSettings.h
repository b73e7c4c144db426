// The user's preferences and the window's geometry, kept in an INI file.
#pragma once

#include <QRect>
#include <QString>

/// Reached through dynamic_singleton<ProgramSettings>; used on the interface thread only.
/// Fields are read and changed directly: nothing reaches the disk before save().
class ProgramSettings
{
public:
    static constexpr int defaultGroupPanelWidth = 190;

    ProgramSettings();

    /// Reads the file; what it does not hold takes its default. Always true: a missing or
    /// unreadable file counts as an empty one. Leaves dateFormat alone.
    bool load(const QString& path);

    /// Writes the file in place, with the running version as its version; a new one is for this
    /// user only. Failures stay silent.
    void save(const QString& path) const;

    void resetToDefaults();

    /// Once at every start, after load(): hands the start-at-login choice to the platform, unless
    /// the file was already written by this version or a newer one.
    void upgradeSettings();

    bool compactView;
    QRect mainWindowFrame; ///< null: never stored
    int groupPanelWidth;   ///< logical pixels; whatever the file holds
    bool openWindowOnStartup;
    bool runOnSystemStartup;
    bool showNotifications;
    QString dateFormat; ///< the system's short one, as QLocale writes formats; never stored
    QString uiLanguage; ///< a locale id such as "en_US"; empty after a reset
    QString version;    ///< of the program that wrote the file; empty if unknown
    bool backups;       ///< whether dated backups of the database are made
};
