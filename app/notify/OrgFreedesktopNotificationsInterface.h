// The freedesktop notification service, as a typed D-Bus proxy.
#pragma once

#include <QDBusAbstractInterface>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>

/// Calls and signals are called as on the bus. Calls return at once, with a reply to wait for.
/// Interface thread.
class OrgFreedesktopNotificationsInterface : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    static constexpr const char* staticInterfaceName() { return "org.freedesktop.Notifications"; }

    /// The service that runs on the session bus, or will once it is called.
    explicit OrgFreedesktopNotificationsInterface(QObject* parent = nullptr);

    QDBusPendingReply<QStringList> GetCapabilities();
    /// `replacesId`: a pop-up to show anew, 0 for a new one. `timeoutMs`: how long it stays. The
    /// reply is the pop-up's id.
    QDBusPendingReply<quint32> Notify(const QString& appName, quint32 replacesId,
                                      const QString& icon, const QString& summary,
                                      const QString& body, const QStringList& actions,
                                      const QVariantMap& hints, int timeoutMs);
    QDBusPendingReply<> CloseNotification(quint32 id);
    /// The reply is name, vendor and version.
    QDBusPendingReply<QString, QString, QString> GetServerInformation();

Q_SIGNALS:
    void NotificationClosed(quint32 id, quint32 reason);
    void ActionInvoked(quint32 id, const QString& actionKey);
};
