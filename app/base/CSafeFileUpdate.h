// Replacing a file so that a crash, a full disk or an I/O error never costs the old version.
#pragma once

#include <QString>

#include <functional>

class QIODevice;

/// Chooses a temporary name beside a target and swaps the finished file in, keeping the version
/// before it as ".bak". Never removes a temporary file. Use replaceFileSafely() to write.
class CSafeFileUpdate
{
public:
    explicit CSafeFileUpdate(const QString& path);

    [[nodiscard]] const QString& temporaryPath() const { return m_temporaryPath; }

    /// Puts the temporary file in the target's place. Where the file system has hard links the
    /// target exists at every instant, and a failure leaves it as it was; without them a failed
    /// last step leaves the previous version under its ".bak" name.
    /// Returns false, with the temporary file still there, when any step fails.
    [[nodiscard]] bool update() const;

private:
    QString m_path;
    QString m_temporaryPath;
};

enum class ESafeWrite
{
    done,
    openFailed,   ///< the temporary file could not be opened; nothing changed
    writeFailed,  ///< writing failed; the temporary file was removed, nothing changed
    updateFailed, ///< the complete temporary file could not be swapped in and stays
};

struct SafeWriteResult
{
    ESafeWrite state = ESafeWrite::done;
    QString temporaryPath;
};

/// Writes a new version of `path` through CSafeFileUpdate: `produce` writes to the device it is
/// given and returns whether it succeeded. The file is swapped in only after every write, the
/// flush and the sync to the disk succeeded. A version already there keeps its permissions.
/// Logs nothing: the caller knows what the file is. Any thread, one call per path at a time.
[[nodiscard]] SafeWriteResult replaceFileSafely(const QString& path,
                                                const std::function<bool(QIODevice&)>& produce);
