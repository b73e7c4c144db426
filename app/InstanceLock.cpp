#include "app/InstanceLock.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr mode_t userOnly = S_IRUSR | S_IWUSR;

InstanceLock::EState tryFlock(int descriptor, int operation)
{
    int result = -1;
    do {
        result = ::flock(descriptor, operation | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result == 0)
        return InstanceLock::EState::held;
    return errno == EWOULDBLOCK ? InstanceLock::EState::busy : InstanceLock::EState::unavailable;
}

/// Whether the open file or folder is what the path leads to.
bool isAt(int descriptor, const QString& path)
{
    struct stat held = {};
    struct stat found = {};
    return ::fstat(descriptor, &held) == 0 &&
           ::stat(QFile::encodeName(path).constData(), &found) == 0 &&
           held.st_dev == found.st_dev && held.st_ino == found.st_ino;
}

void closeIfOpen(int& descriptor)
{
    if (descriptor >= 0)
        ::close(std::exchange(descriptor, -1));
}

} // namespace

InstanceLock::InstanceLock(const QString& path, EFolder folder)
    : m_path(path)
    , m_folderMode(folder)
{
}

InstanceLock::~InstanceLock()
{
    closeIfOpen(m_file);
    closeIfOpen(m_folder);
}

InstanceLock::EState InstanceLock::tryLock()
{
    const std::lock_guard lock(m_mutex);
    return m_held ? EState::held : _tryLock();
}

InstanceLock::EState InstanceLock::_tryLock()
{
    const EState file = _tryFile();
    // Without the file the folder must be ours alone: a holder of a file keeps it at least shared.
    const bool isShared = m_folderMode == EFolder::shared && file == EState::held;
    const EState folder =
        file == EState::busy ? EState::busy : _tryFolder(isShared ? LOCK_SH : LOCK_EX);
    if (folder == EState::busy) {
        // The other copy has the lock: a file kept here would only disturb it.
        if (file == EState::held)
            ::flock(m_file, LOCK_UN);
        return EState::busy;
    }
    m_fileHeld = file == EState::held;
    m_held = m_fileHeld || folder == EState::held;
    if (m_fileHeld)
        ::fchmod(m_file, userOnly);
    _writeAddress();
    return m_held ? EState::held : EState::unavailable;
}

QString InstanceLock::folder() const
{
    return QFileInfo(m_path).absolutePath();
}

bool InstanceLock::renew()
{
    const std::lock_guard lock(m_mutex);
    if (!m_held)
        return false;
    if (m_folder >= 0 && !isAt(m_folder, folder()))
        return _followFolder();
    if (!m_fileHeld || isAt(m_file, m_path))
        return true;
    int deleted = std::exchange(m_file, -1);
    const EState state = _tryFile();
    if (state == EState::busy) {
        std::swap(m_file, deleted);
        closeIfOpen(deleted);
        return false;
    }
    closeIfOpen(deleted);
    m_fileHeld = state == EState::held;
    _writeAddress();
    return m_fileHeld || (m_folder >= 0 && tryFlock(m_folder, LOCK_EX) == EState::held);
}

/// Locks the folder that stands where the locked one stood.
bool InstanceLock::_followFolder()
{
    struct stat held = {};
    struct stat found = {};
    if (::fstat(m_folder, &held) != 0 ||
        ::stat(QFile::encodeName(folder()).constData(), &found) != 0 || held.st_dev != found.st_dev)
        return false;
    InstanceLock next(m_path, m_folderMode);
    if (next._tryLock() != EState::held)
        return false;
    std::swap(m_file, next.m_file);
    std::swap(m_folder, next.m_folder);
    m_fileHeld = next.m_fileHeld;
    _writeAddress();
    return true;
}

void InstanceLock::publish(const QString& address)
{
    const std::lock_guard lock(m_mutex);
    m_address = address;
    _writeAddress();
}

void InstanceLock::_writeAddress()
{
    if (!m_fileHeld || ::ftruncate(m_file, 0) != 0 || m_address.isEmpty())
        return;
    const QByteArray line = QFile::encodeName(m_address) + '\n';
    // A line that is cut short lacks its line feed, and counts as none.
    [[maybe_unused]] const ssize_t written =
        ::pwrite(m_file, line.constData(), static_cast<size_t>(line.size()), 0);
}

QString InstanceLock::address() const
{
    std::array<char, 4096> text{};
    const ssize_t size = m_file < 0 ? -1 : ::pread(m_file, text.data(), text.size(), 0);
    if (size <= 0)
        return {};
    const QByteArray line(text.data(), size);
    return line.endsWith('\n') ? QFile::decodeName(line.chopped(1)) : QString();
}

InstanceLock::EState InstanceLock::_tryFile()
{
    if (m_file < 0) {
        m_file = ::open(QFile::encodeName(m_path).constData(),
                        O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, userOnly);
    }
    return m_file < 0 ? EState::unavailable : tryFlock(m_file, LOCK_EX);
}

InstanceLock::EState InstanceLock::_tryFolder(int operation)
{
    if (m_folder < 0) {
        m_folder =
            ::open(QFile::encodeName(folder()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }
    return m_folder < 0 ? EState::unavailable : tryFlock(m_folder, operation);
}
