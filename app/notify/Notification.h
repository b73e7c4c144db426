// A pop-up message on the desktop.
#pragma once

#include <QDBusPendingReply>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <memory>

class OrgFreedesktopNotificationsInterface;

/// The values of the freedesktop standard.
enum class NotificationUrgency : char
{
    Low = 0,
    Normal = 1,
    Critical = 2
};

/// Summary, body, hints and actions of one pop-up, and its life on the screen. All pop-ups share
/// one connection to the notification service, from init() to uninit(). Waiting for the service
/// blocks the caller, for three seconds at most. Interface thread.
class Notification : public QObject
{
    Q_OBJECT

public:
    /// Connects, as `appName`. Returns false where there is no session bus; whether a service is
    /// there only shows when it is called.
    static bool init(const QString& appName);
    /// Lets the connection go. Pop-ups stay on the screen, and go on hearing of their end.
    static void uninit();
    [[nodiscard]] static bool isInitted() { return s_isInitted; }
    [[nodiscard]] static QString getAppName() { return s_appName; }

    /// What the service can do, in the standard's words; empty on failure. Waits.
    [[nodiscard]] static QStringList getServerCaps();
    /// Returns false, and changes nothing, on failure. Waits.
    static bool getServerInfo(QString& name, QString& vendor, QString& version);

    /// Plain texts, of normal urgency, for five seconds.
    Notification(const QString& summary, const QString& body, const QString& iconName,
                 QObject* parent = nullptr);

    void setSummary(const QString& summary) { m_summary = summary; }
    void setBody(const QString& body) { m_body = body; }
    void setIconName(const QString& iconName) { m_iconName = iconName; }
    /// How long it stays on the screen, in milliseconds.
    void setTimeout(int timeoutMs) { m_timeoutMs = timeoutMs; }
    /// Whether it deletes itself once it has left the screen; it does unless told otherwise.
    void setAutoDelete(bool autoDelete) { m_autoDelete = autoDelete; }
    [[nodiscard]] bool autoDelete() const { return m_autoDelete; }

    /// Offers a button. `key` comes back in actionInvoked().
    void addAction(const QString& key, const QString& label);
    void clearActions() { m_actions.clear(); }

    void setHint(const QString& name, const QVariant& value) { m_hints.insert(name, value); }
    void setHintString(const QString& name, const QString& value) { setHint(name, value); }
    void setHintByteArray(const QString& name, const QByteArray& value) { setHint(name, value); }
    /// Travels as an array of one byte.
    void setHintByte(const QString& name, char value) { setHint(name, QByteArray(1, value)); }
    void setHintInt32(const QString& name, qint32 value) { setHint(name, value); }
    void setHintDouble(const QString& name, double value) { setHint(name, value); }
    void clearHints() { m_hints.clear(); }
    void setCategory(const QString& category);
    void setUrgency(NotificationUrgency urgency);
    /// The point of the screen that the pop-up is about, in pixels.
    void setLocation(int x, int y);

    /// Puts the pop-up on the screen and waits for its id; returns whether it came. Shown before,
    /// the pop-up is changed instead, without waiting.
    bool show();
    /// Takes the pop-up off the screen. Waits.
    void close();

Q_SIGNALS:
    /// `reason` as in the standard: 1 expired, 2 dismissed, 3 closed by a call.
    void closed(quint32 reason);
    void actionInvoked(const QString& actionKey);

private Q_SLOTS:
    void onNotificationClosed(quint32 id, quint32 reason);
    void onActionInvoked(quint32 id, const QString& actionKey);

private:
    [[nodiscard]] bool _showNew();
    QDBusPendingReply<quint32> _send() const;

    inline static bool s_isInitted = false;
    inline static QString s_appName;
    static std::unique_ptr<OrgFreedesktopNotificationsInterface> s_notifications;

    quint32 m_id = 0; ///< as the service knows it; 0 before it was shown
    QString m_summary;
    QString m_body;
    QString m_iconName;
    int m_timeoutMs = 5000;
    QStringList m_actions; ///< keys and labels in turn
    QVariantMap m_hints;
    bool m_autoDelete = true;

    // What the service that shows it wants.
    bool m_takesMarkup = false;
    bool m_plainUrgency = false;
};
