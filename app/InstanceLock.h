// The lock that makes one running copy the first one.
#pragma once

#include <QString>

/// An advisory lock on a file, held by the kernel for as long as the process lives: it cannot be
/// left behind by a kill or a power cut. The file carries the holder's address and is never
/// deleted, or two copies could each lock a file of that name.
class InstanceLock
{
public:
    enum class EState
    {
        held,        ///< by this object
        busy,        ///< by another one
        unavailable, ///< no lock can be had in this place
    };

    /// `path`: the lock file, made when missing, for this user only.
    explicit InstanceLock(const QString& path);
    ~InstanceLock();
    Q_DISABLE_COPY_MOVE(InstanceLock)

    /// Takes the lock if it is free; never waits.
    EState tryLock();

    /// For the holder: leaves its address for the others. Empty takes it back.
    void publish(const QString& address);
    /// What the holder has published; empty when that is nothing.
    [[nodiscard]] QString address() const;

private:
    [[nodiscard]] bool _open();

    QString m_path;
    int m_file = -1;
    bool m_held = false;
};
