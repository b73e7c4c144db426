// A year of history beside the database: dated backups, made at no cost and thinned out with age.
#pragma once

#include <QDateTime>
#include <QFile>
#include <QMutex>
#include <QStringList>

#include <atomic>
#include <memory>
#include <vector>

/// Keeps earlier versions of the database in a folder, as "database-2026-11-23.xml". A backup is a
/// hard link to the version that a commit has just set aside, which nothing writes into any more.
/// What cannot be made is logged once a day and holds nothing back. Any thread.
class DatabaseBackups
{
public:
    /// `folder`: where they lie; made when it is first needed, for this user only.
    explicit DatabaseBackups(const QString& folder);
    ~DatabaseBackups();
    Q_DISABLE_COPY_MOVE(DatabaseBackups)

    /// Without, no further ones are made; those that are there stay. On unless set.
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// Keeps the file at `previous`, the version before the one just written, as the backup of
    /// today if there is none yet; one that held many tasks more than the new one also under the
    /// time of day. Copies nothing: what the file system cannot link waits for copyPending().
    void keep(const QString& previous, bool lostMost);

    /// Copies what could not be linked. Takes the time of the disk.
    void copyPending();

    /// When a backup was made.
    struct Stamp
    {
        QDate day;
        QTime time; ///< null where the name has none
    };
    /// What a file name says of that; the day is null unless it is the name of a backup.
    [[nodiscard]] static Stamp stampOf(const QString& name);

    /// Which of the file names are backups that nobody needs any more on `today`. Those of the
    /// newest 7 days stay, the last of each of the newest 5 weeks that are over by their Sunday,
    /// the first of each of the newest 12 months, and the newest 7 with a time of day. What is
    /// dated after today, when the clock was wrong, stays and counts for nothing.
    [[nodiscard]] static QStringList superfluous(const QStringList& names, const QDate& today);

private:
    void _keepAs(const QString& name, const QString& previous);
    void _thinOut() const;
    void _logOncePerDay(const QString& path, const QString& reason);

    struct Pending
    {
        QString path;
        std::unique_ptr<QFile> source;
    };

    QString m_folder;
    std::atomic<bool> m_enabled = true;
    QMutex m_mutex; // guards what follows, never while copying
    std::vector<Pending> m_pending;
    QDate m_logged;
};
