#include "app/QtSingleApplication.h"

#include "ui/controls/WindowHelper.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <sys/un.h>

using namespace Qt::StringLiterals;

namespace {
constexpr int settleMs = 5000;
constexpr int retryMs = 20;
constexpr int connectMs = 200;
constexpr int clientMs = 10000;

// A message: the mark, the length of the text, the text in UTF-8. The answer is the receipt.
constexpr quint32 mark = 0x6d767231;
constexpr quint32 maxTextSize = 65536;
constexpr int headerSize = 2 * sizeof(quint32);
constexpr QByteArrayView receipt("ok");

QString hashed(const QString& text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
    return u"instance-"_s + QString::fromLatin1(hash.toHex().first(16));
}

bool fitsSocketAddress(const QString& path)
{
    return QFile::encodeName(path).size() < qsizetype(sizeof(sockaddr_un::sun_path));
}

int remainingMs(const QDeadlineTimer& deadline)
{
    return static_cast<int>(deadline.remainingTime());
}
} // namespace

QtSingleApplication::QtSingleApplication(const QString& id, int& argc, char** argv,
                                         const QString& folder)
    : QApplication(argc, argv)
    , m_id(id)
    , m_folder(folder)
{
    _addLock(folder, id, InstanceLock::EFolder::exclusive);
    // Whoever is started from now on waits for the lock, to be the next first copy.
    connect(this, &QCoreApplication::aboutToQuit, this, &QtSingleApplication::_stopListening);
}

QtSingleApplication::~QtSingleApplication()
{
    _stopListening();
}

bool QtSingleApplication::isRunning()
{
    const QDeadlineTimer deadline(settleMs);
    do {
        switch (_tryLock()) {
        case InstanceLock::EState::held:
            _listen();
            return false;
        case InstanceLock::EState::unavailable:
            return false;
        case InstanceLock::EState::busy:
            break;
        }
        QLocalSocket socket;
        if (_connect(socket, QDeadlineTimer(connectMs)))
            return true;
        QThread::msleep(retryMs);
    } while (!deadline.hasExpired());
    return true;
}

bool QtSingleApplication::sendMessage(const QString& message, int timeoutMs)
{
    const QByteArray text = message.toUtf8();
    if (m_server || text.size() > qsizetype(maxTextSize))
        return false;
    QByteArray frame;
    QDataStream(&frame, QIODevice::WriteOnly) << mark << text;

    const QDeadlineTimer deadline(timeoutMs);
    QLocalSocket socket;
    if (!_connect(socket, deadline) || socket.write(frame) != frame.size())
        return false;
    while (socket.bytesAvailable() < receipt.size()) {
        if (!socket.waitForReadyRead(remainingMs(deadline)))
            return false;
    }
    return socket.readAll() == receipt;
}

void QtSingleApplication::setActivationWindow(QWidget* window, bool activateOnMessage)
{
    m_activationWindow = window;
    disconnect(this, &QtSingleApplication::messageReceived, this,
               &QtSingleApplication::activateWindow);
    if (activateOnMessage) {
        connect(this, &QtSingleApplication::messageReceived, this,
                &QtSingleApplication::activateWindow);
    }
}

void QtSingleApplication::activateWindow()
{
    if (!m_activationWindow)
        return;
    windows::withdrawUnseen(*m_activationWindow);
    m_activationWindow->setWindowState(m_activationWindow->windowState() & ~Qt::WindowMinimized);
    m_activationWindow->show();
    m_activationWindow->raise();
    m_activationWindow->activateWindow();
}

void QtSingleApplication::_addLock(const QString& folder, const QString& id,
                                   InstanceLock::EFolder mode)
{
    m_locks.push_back(
        std::make_unique<InstanceLock>(QDir(folder).filePath(hashed(id) + u".lock"), mode));
}

void QtSingleApplication::guard(const QString& file)
{
    const QFileInfo info(file);
    if (info.absolutePath() == QFileInfo(m_folder).canonicalFilePath())
        return;
    // A copy whose data folder that is has named its lock by the id alone.
    const bool isOwn = info.fileName() == "database.xml"_L1;
    _addLock(info.absolutePath(), isOwn ? m_id : m_id + u'\n' + info.fileName(),
             InstanceLock::EFolder::shared);
}

/// Takes all locks, or finds the one that another copy holds.
InstanceLock::EState QtSingleApplication::_tryLock()
{
    for (const auto& lock : m_locks) {
        const InstanceLock::EState state = lock->tryLock();
        if (state == InstanceLock::EState::busy)
            m_busyLock = lock.get();
        if (state == InstanceLock::EState::unavailable)
            m_unlockableFolder = lock->folder();
        if (state != InstanceLock::EState::held)
            return state;
    }
    return InstanceLock::EState::held;
}

bool QtSingleApplication::renewLocks() const
{
    return std::all_of(m_locks.begin(), m_locks.end(),
                       [](const auto& lock) { return lock->renew(); });
}

void QtSingleApplication::_publish(const QString& address)
{
    for (const auto& lock : m_locks)
        lock->publish(address);
}

QString QtSingleApplication::_socketPath() const
{
    return QDir(m_folder).absoluteFilePath(hashed(m_id) + u".socket");
}

/// A path in the user's runtime folder for this id and data folder; empty without such a folder.
QString QtSingleApplication::_runtimePath(const QString& suffix) const
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty())
        return {};
    const QString canonical = QFileInfo(m_folder).canonicalFilePath();
    return QDir(runtime).filePath(
        hashed(m_id + u'\n' + (canonical.isEmpty() ? m_folder : canonical)) + suffix);
}

void QtSingleApplication::_listen()
{
    if (m_server)
        return;
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this,
            &QtSingleApplication::_onNewConnection);
    if (_listenAt(_socketPath()) || _listenAt(_runtimePath(u".socket"_s)))
        _publish(m_server->fullServerName());
}

bool QtSingleApplication::_listenAt(const QString& path)
{
    if (path.isEmpty() || !fitsSocketAddress(path))
        return false;
    // This copy holds the lock, so a socket that lies there was left behind by a killed one.
    QLocalServer::removeServer(path);
    return m_server->listen(path);
}

void QtSingleApplication::_stopListening()
{
    if (!m_server)
        return;
    _publish({});
    m_server->close();
}

bool QtSingleApplication::_connect(QLocalSocket& socket, const QDeadlineTimer& deadline) const
{
    for (const QString& address : _addresses()) {
        socket.connectToServer(address);
        if (socket.waitForConnected(remainingMs(deadline)))
            return true;
    }
    return false;
}

/// Where the other copy may be listening: what its lock file says, and, since that may be
/// unreadable or could not be written, the two usual places.
QStringList QtSingleApplication::_addresses() const
{
    const QString published = m_busyLock ? m_busyLock->address() : QString();
    QStringList addresses;
    for (const QString& path : {published, _socketPath(), _runtimePath(u".socket"_s)}) {
        if (QFileInfo::exists(path) && fitsSocketAddress(path))
            addresses += path;
    }
    return addresses;
}

void QtSingleApplication::_onNewConnection()
{
    while (QLocalSocket* client = m_server->nextPendingConnection()) {
        client->setReadBufferSize(headerSize + maxTextSize);
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        connect(client, &QLocalSocket::readyRead, this, [this, client] { _receive(client); });
        QTimer::singleShot(clientMs, client, &QLocalSocket::abort);
        _receive(client);
    }
}

/// Takes the client's message once it is there in full; closes on anything else.
void QtSingleApplication::_receive(QLocalSocket* client)
{
    if (client->bytesAvailable() < headerSize)
        return;
    quint32 foundMark = 0;
    quint32 size = 0;
    QDataStream(client->peek(headerSize)) >> foundMark >> size;
    if (foundMark != mark || size > maxTextSize) {
        client->abort();
        return;
    }
    if (client->bytesAvailable() < headerSize + qint64(size))
        return;
    client->skip(headerSize);
    const QString message = QString::fromUtf8(client->read(size));
    disconnect(client, &QLocalSocket::readyRead, this, nullptr);
    client->write(receipt.data(), receipt.size());
    client->disconnectFromServer();
    Q_EMIT messageReceived(message);
}
