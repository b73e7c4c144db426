#include "app/base/CSafeFileUpdate.h"

#include "app/base/LogHelper.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A file that remembers its first failed write. It gathers small writes itself: QFile's own
/// buffer forgets an error when a later write succeeds.
class CheckedFile final : public QFile
{
public:
    using QFile::QFile;

    /// Opens with the permissions of `model`, if there is such a file: what is to replace a
    /// private file is private from its first byte.
    bool openForWriting(const QString& model)
    {
        m_buffer.reserve(bufferSize + bufferSize / 4);
        constexpr OpenMode mode = WriteOnly | Truncate | Unbuffered;
        if (!QFile::exists(model))
            return open(mode);
        // The "user" flags say what this process may do, which is no part of the file's mode.
        constexpr Permissions ofProcess = ReadUser | WriteUser | ExeUser;
        const Permissions kept = QFile::permissions(model) & ~ofProcess;
        if (!open(mode, kept))
            return false;
        // Adds what the umask took. A file system without permissions is no reason to fail.
        if (!setPermissions(kept))
            unsetError();
        return true;
    }

    /// Brings everything onto the disk and closes. Returns whether all of it got there.
    bool finish()
    {
        _drain();
        if (!m_failed && (!flush() || error() != NoError || !_sync()))
            m_failed = true;
        close();
        return !m_failed && error() == NoError;
    }

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        m_buffer.append(data, size);
        if (m_buffer.size() >= bufferSize)
            _drain();
        return m_failed ? -1 : size;
    }

private:
    static constexpr qsizetype bufferSize = qsizetype{256} * 1024;

    void _drain()
    {
        if (!m_failed && !m_buffer.isEmpty())
            m_failed = QFile::writeData(m_buffer.constData(), m_buffer.size()) != m_buffer.size();
        m_buffer.resize(0);
    }

    [[nodiscard]] bool _sync() const
    {
        int result = 0;
        do {
            result = ::fdatasync(handle());
        } while (result != 0 && errno == EINTR);
        // Some file systems have nothing to sync and say so.
        return result == 0 || errno == EINVAL || errno == ENOTSUP;
    }

    QByteArray m_buffer;
    bool m_failed = false;
};

bool entryExists(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

bool renameOver(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

bool hardLink(const QString& from, const QString& to)
{
    return ::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// Makes the renames of a folder durable. File systems that cannot are none the worse for it.
void syncFolderOf(const QString& path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

QString chooseTemporaryPath(const QString& path)
{
    const QString first = path + u".new"_s;
    if (!entryExists(first))
        return first;
    for (int n = 0; n <= 1000; ++n) {
        const QString candidate = first + u'_' + QString::number(n);
        if (!entryExists(candidate))
            return candidate;
    }
    return {};
}

} // namespace

CSafeFileUpdate::CSafeFileUpdate(const QString& path)
    : m_path(path)
    , m_temporaryPath(chooseTemporaryPath(path))
{
    if (m_temporaryPath.isEmpty()) {
        m_temporaryPath = path + u".new_1001"_s;
        MVR_LOG_ERR(u"Eh-h... Houston, we have a problem!"_s);
    }
}

bool CSafeFileUpdate::update() const
{
    if (!QFile::exists(m_temporaryPath))
        return false;
    if (entryExists(m_path)) {
        const QString backup = m_path + u".bak"_s;
        if (entryExists(backup) && !QFile::remove(backup))
            return false;
        if (!hardLink(m_path, backup) && !renameOver(m_path, backup))
            return false;
    }
    return renameOver(m_temporaryPath, m_path);
}

SafeWriteResult replaceFileSafely(const QString& path,
                                  const std::function<bool(QIODevice&)>& produce)
{
    const CSafeFileUpdate update(path);
    const QString& temporary = update.temporaryPath();
    CheckedFile file(temporary);
    if (!file.openForWriting(path))
        return {ESafeWrite::openFailed, temporary};

    const bool produced = produce(file);
    if (!file.finish() || !produced) {
        QFile::remove(temporary);
        return {ESafeWrite::writeFailed, temporary};
    }
    if (!update.update())
        return {ESafeWrite::updateFailed, temporary};
    syncFolderOf(path);
    return {ESafeWrite::done, temporary};
}
