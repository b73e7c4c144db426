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

    /// Puts the temporary file in the target's place. Where the file system has hard links or can
    /// exchange two names the target exists at every instant, and a failure leaves it as it was;
    /// without them a failed last step leaves the previous version under its ".bak" name.
    /// Returns false when any step fails, with the temporary file still there and the reason in
    /// errno.
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
    updateFailed, ///< the complete temporary file could not be put in place
};

struct SafeWriteResult
{
    ESafeWrite state = ESafeWrite::done;
    QString temporaryPath;
    int error = 0; ///< what the system said to a failure, from errno.h; 0 if it was not asked
};

/// What to log of a failure to write `path`: `opening` or `writing`, texts of the caller's, or a
/// standing one about the swap. Empty for a success.
[[nodiscard]] QString failureText(const SafeWriteResult& result, const QString& path,
                                  const QString& opening, const QString& writing);

/// Writes the content of a file to the device it is given and returns whether it succeeded.
using FileProducer = std::function<bool(QIODevice&)>;

/// Writes a new version of `path` through CSafeFileUpdate. The file is swapped in only after every
/// write, the flush and the sync to the disk succeeded; one that cannot be swapped in stays. A
/// version already there keeps its permissions, the first one is for this user only. `onSwapped`
/// is called as soon as the new version is in place, before it is known to outlast a power cut.
/// Logs nothing: the caller knows what the file is. Any thread, one call per path at a time.
[[nodiscard]] SafeWriteResult replaceFileSafely(const QString& path, const FileProducer& produce,
                                                const std::function<void()>& onSwapped = {});

/// Who may open a file that is new.
enum class EFileAccess
{
    userOnly,
    umask, ///< as the user has it for new files
};

/// Writes a file of the user's choosing: like replaceFileSafely(), but without a ".bak", and
/// nothing stays of what could not be put in place. Where `path` is a link, the file that it leads
/// to is replaced.
[[nodiscard]] SafeWriteResult writeFileSafely(const QString& path, EFileAccess access,
                                              const FileProducer& produce);
