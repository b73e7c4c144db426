#include "app/base/UserMetrics.h"

#include "app/base/CSafeFileUpdate.h"
#include "app/base/LogHelper.h"
#include "app/base/Unique.h"
#include "app/base/UserMetricsReader.h"
#include "app/base/UserMetricsWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

using namespace Qt::StringLiterals;

bool UserMetrics::load(const QString& path)
{
    QFile file(path);
    // Opening a pipe of that name would block.
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
           UserMetricsReader(this).read(&file);
}

void UserMetrics::save(const QString& path) const
{
    const SafeWriteResult result = replaceFileSafely(
        path, [this](QIODevice& device) { return UserMetricsWriter().write(&device, *this); });
    if (result.state == ESafeWrite::done)
        return;
    MVR_LOG_ERR(failureText(result, path, u"Failed to open metrics for writing "_s + path,
                            u"Failed to write metrics to "_s + path));
}

QString UserMetrics::installationId()
{
    auto& metrics = dynamic_singleton<UserMetrics>::inst();
    const QMutexLocker lock(&metrics.m_mutex);
    if (metrics.m_installationId.isEmpty())
        metrics.m_installationId = Unique::toString(Unique::generate());
    return metrics.m_installationId;
}

QString UserMetrics::_id() const
{
    const QMutexLocker lock(&m_mutex);
    return m_installationId;
}

void UserMetrics::_setId(const QString& id)
{
    const QMutexLocker lock(&m_mutex);
    m_installationId = id;
}
