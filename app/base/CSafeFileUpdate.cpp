#include "app/base/CSafeFileUpdate.h"

#include "app/base/LogHelper.h"
#include "app/base/PathHelper.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A new file that remembers its first failure. It gathers small writes and hands them to the
/// system itself: QFile's own buffer forgets an error when a later write succeeds.
class CheckedFile final : public QIODevice
{
public:
    ~CheckedFile() override { _closeDescriptor(); }

    /// Opens with the permissions of `model`, if there is such a file: what is to replace a
    /// private file is private from its first byte.
    bool openForWriting(const QString& path, const QString& model, EFileAccess access)
    {
        struct stat old = {};
        const bool isModelled = ::stat(QFile::encodeName(model).constData(), &old) == 0;
        const mode_t fresh = access == EFileAccess::userOnly ? 0600 : 0666;
        const mode_t mode = isModelled ? old.st_mode & 07777 : fresh;
        m_descriptor =
            ::open(QFile::encodeName(path).constData(),
                   O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, mode);
        if (m_descriptor < 0)
            return _fail();
        // Adds what the umask took. A file system without permissions is no reason to fail.
        if (isModelled || access == EFileAccess::userOnly)
            ::fchmod(m_descriptor, mode);
        m_buffer.reserve(bufferSize + bufferSize / 4);
        return open(WriteOnly | Unbuffered);
    }

    /// Brings everything onto the disk and closes. Returns whether all of it got there.
    bool finish()
    {
        _drain();
        if (m_error == 0)
            _sync();
        close();
        _closeDescriptor();
        return m_error == 0;
    }

    /// The first failure, from errno.h; 0 for none.
    [[nodiscard]] int firstError() const { return m_error; }

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }

    qint64 writeData(const char* data, qint64 size) override
    {
        m_buffer.append(data, size);
        if (m_buffer.size() >= bufferSize)
            _drain();
        return m_error == 0 ? size : -1;
    }

private:
    static constexpr qsizetype bufferSize = qsizetype{256} * 1024;

    bool _fail()
    {
        if (m_error == 0)
            m_error = errno;
        return false;
    }

    void _drain()
    {
        const char* data = m_buffer.constData();
        qsizetype left = m_buffer.size();
        while (left > 0 && m_error == 0) {
            const ssize_t written = ::write(m_descriptor, data, static_cast<size_t>(left));
            if (written > 0) {
                data += written;
                left -= written;
            } else if (written == 0 || errno != EINTR) {
                m_error = written == 0 ? ENOSPC : errno;
            }
        }
        m_buffer.resize(0);
    }

    void _sync()
    {
        int result = 0;
        do {
            result = ::fdatasync(m_descriptor);
        } while (result != 0 && errno == EINTR);
        // Some file systems have nothing to sync and say so.
        if (result != 0 && errno != EINVAL && errno != ENOTSUP)
            _fail();
    }

    void _closeDescriptor()
    {
        const int descriptor = std::exchange(m_descriptor, -1);
        if (descriptor >= 0 && ::close(descriptor) != 0 && errno != EINTR)
            _fail();
    }

    QByteArray m_buffer;
    int m_descriptor = -1;
    int m_error = 0;
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

bool exchange(const QString& one, const QString& other)
{
    return ::renameat2(AT_FDCWD, QFile::encodeName(one).constData(), AT_FDCWD,
                       QFile::encodeName(other).constData(), RENAME_EXCHANGE) == 0;
}

/// Makes `backup` another name of the file at `path`, in the place of what had that name.
bool keepAs(const QString& backup, const QString& path)
{
    const QString fresh = backup + u'~';
    const QByteArray freshName = QFile::encodeName(fresh);
    ::unlink(freshName.constData()); // left behind by a kill
    if (!hardLink(path, fresh))
        return false;
    const bool isKept = renameOver(fresh, backup);
    // Left over by a failure, and by rename() where both names were of one file already.
    const int error = errno;
    ::unlink(freshName.constData());
    errno = error;
    return isKept;
}

/// Exchanges the versions and gives the old one its name; all or nothing.
bool exchangeAndKeepAs(const QString& backup, const QString& temporary, const QString& path)
{
    if (!exchange(temporary, path))
        return false;
    if (renameOver(temporary, backup))
        return true;
    const int error = errno;
    exchange(temporary, path);
    errno = error;
    return false;
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
    if (!entryExists(m_temporaryPath)) {
        errno = ENOENT;
        return false;
    }
    if (entryExists(m_path)) {
        const QString backup = m_path + u".bak"_s;
        if (!keepAs(backup, m_path)) {
            if (exchangeAndKeepAs(backup, m_temporaryPath, m_path))
                return true;
            if (!renameOver(m_path, backup))
                return false;
        }
    }
    return renameOver(m_temporaryPath, m_path);
}

QString failureText(const SafeWriteResult& result, const QString& path, const QString& opening,
                    const QString& writing)
{
    switch (result.state) {
    case ESafeWrite::done:
        break;
    case ESafeWrite::openFailed:
        return opening;
    case ESafeWrite::writeFailed:
        return writing;
    case ESafeWrite::updateFailed:
        return u"Safe file update failed. Updating "_s + path + u" from "_s + result.temporaryPath;
    }
    return {};
}

namespace {

/// Writes the whole of a temporary file that takes over the permissions of `model`.
SafeWriteResult writeTemporary(const QString& temporary, const QString& model, EFileAccess access,
                               const FileProducer& produce)
{
    CheckedFile file;
    if (!file.openForWriting(temporary, model, access))
        return {ESafeWrite::openFailed, temporary, file.firstError()};
    const bool produced = produce(file);
    if (file.finish() && produced)
        return {ESafeWrite::done, temporary};
    QFile::remove(temporary);
    return {ESafeWrite::writeFailed, temporary, file.firstError()};
}

} // namespace

SafeWriteResult replaceFileSafely(const QString& path, const FileProducer& produce,
                                  const std::function<void()>& onSwapped)
{
    const CSafeFileUpdate update(path);
    SafeWriteResult result =
        writeTemporary(update.temporaryPath(), path, EFileAccess::userOnly, produce);
    if (result.state != ESafeWrite::done)
        return result;
    if (!update.update())
        return {ESafeWrite::updateFailed, result.temporaryPath, errno};
    if (onSwapped)
        onSwapped();
    syncFolderOf(path);
    return result;
}

SafeWriteResult writeFileSafely(const QString& path, EFileAccess access,
                                const FileProducer& produce)
{
    const QString target = PathHelper::realPath(path);
    SafeWriteResult result =
        writeTemporary(CSafeFileUpdate(target).temporaryPath(), target, access, produce);
    if (result.state != ESafeWrite::done)
        return result;
    if (!renameOver(result.temporaryPath, target)) {
        result.state = ESafeWrite::updateFailed;
        result.error = errno;
        QFile::remove(result.temporaryPath);
        return result;
    }
    syncFolderOf(target);
    return result;
}
