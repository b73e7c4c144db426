// What this installation tells the service about itself.
#pragma once

#include <QMutex>
#include <QString>

/// Reached through dynamic_singleton<UserMetrics>, created on the interface thread before others
/// use it. Thread-safe.
class UserMetrics
{
public:
    /// Reads the file. Returns false if it is missing or malformed. An identifier that it did not
    /// give is made anew when it is first needed.
    bool load(const QString& path);

    /// Writes the file. Failures go to the log.
    void save(const QString& path) const;

    /// The random identifier of this installation, made by the first call if none was loaded.
    [[nodiscard]] static QString installationId();

private:
    friend class UserMetricsReader;
    friend class UserMetricsWriter;

    [[nodiscard]] QString _id() const;
    void _setId(const QString& id);

    mutable QMutex m_mutex;
    QString m_installationId;
};
