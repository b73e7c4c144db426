// What a desktop offers its programs on the session bus.
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QThread>

/// An object on the session bus under a name of its own, in a thread and on a connection of its
/// own, since its callers are tests that block.
class BusService : public QObject, protected QDBusContext
{
    Q_OBJECT

protected:
    explicit BusService(const QString& name)
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
        , m_name(name)
    {
    }
    Q_DISABLE_COPY_MOVE(BusService)

    /// For the end of the constructor: makes slots and properties known.
    void begin(const QString& path)
    {
        m_bus.registerObject(
            path, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
        moveToThread(&m_thread);
        m_thread.start();
        m_bus.registerService(m_name);
    }
    /// For the destructor.
    void end()
    {
        m_bus.unregisterService(m_name);
        QDBusConnection::disconnectFromBus(m_name);
        m_thread.quit();
        m_thread.wait();
    }

    QDBusConnection m_bus;

private:
    QString m_name;
    QThread m_thread;
};
