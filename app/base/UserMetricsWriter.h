// Writing the metrics file.
#pragma once

class QIODevice;
class UserMetrics;

/// Turns a UserMetrics into a document.
class UserMetricsWriter
{
public:
    /// Writes to an open device. Returns whether the document is whole.
    [[nodiscard]] bool write(QIODevice* device, const UserMetrics& metrics) const;
};
