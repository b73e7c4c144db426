// An application of which one copy runs per data folder.
#pragma once

#include "app/InstanceLock.h"

#include <QApplication>
#include <QPointer>

#include <memory>
#include <vector>

class QDeadlineTimer;
class QLocalServer;
class QLocalSocket;

/// The first copy holds a lock in the data folder and listens on a socket, which later copies
/// send a message to. No other user can reach it. Without a lock there is no telling who is first:
/// such a copy must not go on. Interface thread.
class QtSingleApplication : public QApplication
{
    Q_OBJECT

public:
    /// `id`: shared by all copies that are to find each other. `folder`: where the lock and the
    /// socket lie; what has no room there goes to the user's runtime folder.
    QtSingleApplication(const QString& id, int& argc, char** argv, const QString& folder);
    /// Takes the socket away, then releases the lock.
    ~QtSingleApplication() override;
    Q_DISABLE_COPY_MOVE(QtSingleApplication)

    /// Has one copy run per this file, too, if it lies in another folder: the data folders of
    /// several copies may lead to it. To be called before isRunning().
    void guard(const QString& file);

    /// Whether another copy runs. If not, and a lock could be had, this one is the first from now
    /// on. Waits for up to five seconds for a copy that is just starting or ending.
    [[nodiscard]] bool isRunning();

    /// Whether isRunning() made this copy the first one. If it found no other copy either, nothing
    /// can be locked.
    [[nodiscard]] bool isFirst() const { return m_server != nullptr; }
    /// For the first copy, in any thread: whether its locks still keep the others out. Takes those
    /// anew that were on what has been deleted or moved away.
    [[nodiscard]] bool renewLocks() const;

    /// The folder in which isRunning() found nothing to lock; empty if there is none.
    [[nodiscard]] const QString& unlockableFolder() const { return m_unlockableFolder; }

    /// Sends `message` to the copy that isRunning() found, and waits for its receipt, for up to
    /// `timeoutMs` milliseconds in all. At most 65536 bytes of UTF-8 are sent. Returns whether the
    /// receipt came.
    bool sendMessage(const QString& message, int timeoutMs);

    /// The window that activateWindow() brings up, and whether every message does so. Not owned.
    void setActivationWindow(QWidget* window, bool activateOnMessage);

public Q_SLOTS:
    /// Shows the activation window, restores it if it is minimised, raises and activates it.
    void activateWindow();

Q_SIGNALS:
    void messageReceived(const QString& message);

private:
    void _addLock(const QString& folder, const QString& id, InstanceLock::EFolder mode);
    [[nodiscard]] InstanceLock::EState _tryLock();
    void _publish(const QString& address);
    [[nodiscard]] QString _socketPath() const;
    [[nodiscard]] QString _runtimePath(const QString& suffix) const;
    void _listen();
    bool _listenAt(const QString& path);
    void _stopListening();
    bool _connect(QLocalSocket& socket, const QDeadlineTimer& deadline) const;
    [[nodiscard]] QStringList _addresses() const;
    void _onNewConnection();
    void _receive(QLocalSocket* client);

    QString m_id;
    QString m_folder;
    std::vector<std::unique_ptr<InstanceLock>> m_locks;
    InstanceLock* m_busyLock = nullptr;
    QString m_unlockableFolder;
    std::unique_ptr<QLocalServer> m_server;
    QPointer<QWidget> m_activationWindow;
};
