// Reading the metrics file.
#pragma once

#include "app/base/BasicXmlReader.h"

class UserMetrics;

/// Fills a UserMetrics from a document. One document per reader.
class UserMetricsReader : public BasicXmlReader
{
public:
    explicit UserMetricsReader(UserMetrics* metrics);

    /// Reads from an open device. Returns whether the document was free of errors.
    [[nodiscard]] bool read(QIODevice* device);

private:
    void _readRoot();

    UserMetrics* m_metrics;
};
