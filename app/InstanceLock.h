// The lock that makes one running copy the first one.
#pragma once

#include <QString>

#include <mutex>

/// An advisory lock, held by the kernel for as long as the process lives: it cannot be left behind
/// by a kill or a power cut. It is on a file and on the folder of that file at once, since the file
/// may be beyond our reach or be deleted, and since not every file system locks folders. The file
/// carries the holder's address; we never delete it, or two copies could each lock a file of that
/// name. Thread-safe.
class InstanceLock
{
public:
    enum class EState
    {
        held,        ///< by this object
        busy,        ///< by another one
        unavailable, ///< no lock can be had in this place
    };

    enum class EFolder
    {
        exclusive, ///< one copy per folder
        shared,    ///< one copy per file; several of such files may lie in the folder
    };

    /// `path`: the lock file, made when missing, for this user only.
    InstanceLock(const QString& path, EFolder folder);
    ~InstanceLock();
    Q_DISABLE_COPY_MOVE(InstanceLock)

    /// Takes the lock if it is free; never waits.
    EState tryLock();

    /// For the holder: whether the lock still is on what lies at the path. Locks what has been put
    /// there since, unless another copy has, or the folder is now one of another file system, as
    /// after an unmount.
    [[nodiscard]] bool renew();

    [[nodiscard]] QString folder() const;

    /// For the holder: leaves its address for the others. Empty takes it back.
    void publish(const QString& address);
    /// What the holder has published; empty when that is nothing, or cannot be read.
    [[nodiscard]] QString address() const;

private:
    [[nodiscard]] EState _tryLock();
    [[nodiscard]] EState _tryFile();
    [[nodiscard]] EState _tryFolder(int operation);
    [[nodiscard]] bool _followFolder();
    void _writeAddress();

    mutable std::mutex m_mutex;
    QString m_path;
    EFolder m_folderMode;
    int m_file = -1;
    int m_folder = -1;
    bool m_held = false;
    bool m_fileHeld = false;
    QString m_address;
};
