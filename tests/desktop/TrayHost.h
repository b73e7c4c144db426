// A panel that holds status notifier items, as the newer desktops have.
#pragma once

#include "tests/desktop/BusService.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QMutex>

#include <numeric>

/// Takes one program's item: shows its menu, and clicks it and its entries.
class TrayHost : public BusService
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isThere)

public:
    TrayHost()
        : BusService(QStringLiteral("org.kde.StatusNotifierWatcher"))
    {
        begin(QStringLiteral("/StatusNotifierWatcher"));
    }
    ~TrayHost() override { end(); }

    [[nodiscard]] static bool isThere() { return true; }
    [[nodiscard]] bool hasItem() const { return !_item().isEmpty(); }

    void click() const
    {
        _call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", {0, 0});
    }

    /// Labels and what to click them by.
    [[nodiscard]] QHash<QString, int> menu() const
    {
        QList<int> ids(30);
        std::iota(ids.begin(), ids.end(), 1);
        QDBusMessage call = _message("/MenuBar", "com.canonical.dbusmenu", "GetGroupProperties");
        call << QVariant::fromValue(ids) << QStringList{QStringLiteral("label")};
        const QDBusMessage reply = m_bus.call(call);
        QHash<QString, int> entries;
        if (reply.type() != QDBusMessage::ReplyMessage)
            return entries;
        const auto list = reply.arguments().constFirst().value<QDBusArgument>();
        for (list.beginArray(); !list.atEnd();) {
            int id = 0;
            QVariantMap properties;
            list.beginStructure();
            list >> id >> properties;
            list.endStructure();
            entries.insert(properties.value(QStringLiteral("label")).toString(), id);
        }
        return entries;
    }

    void choose(const QString& label) const
    {
        _call("/MenuBar", "com.canonical.dbusmenu", "Event",
              {menu().value(label), QStringLiteral("clicked"),
               QVariant::fromValue(QDBusVariant(QString())), 0U});
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& /*service*/)
    {
        const QMutexLocker lock(&m_mutex);
        m_item = message().service();
    }

private:
    QString _item() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_item;
    }
    QDBusMessage _message(const char* path, const char* interface, const char* method) const
    {
        return QDBusMessage::createMethodCall(_item(), QLatin1StringView(path),
                                              QLatin1StringView(interface),
                                              QLatin1StringView(method));
    }
    /// Waits for no reply: what is called may open a dialog.
    void _call(const char* path, const char* interface, const char* method,
               const QVariantList& arguments) const
    {
        QDBusMessage call = _message(path, interface, method);
        call.setArguments(arguments);
        m_bus.send(call);
    }

    mutable QMutex m_mutex;
    QString m_item;
};
