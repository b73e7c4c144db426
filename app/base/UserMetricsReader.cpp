#include "app/base/UserMetricsReader.h"

#include "app/base/UserMetrics.h"

using namespace Qt::StringLiterals;

UserMetricsReader::UserMetricsReader(UserMetrics* metrics)
    : m_metrics(metrics)
{
}

bool UserMetricsReader::read(QIODevice* device)
{
    setDevice(device);
    while (!atEnd()) {
        if (readNext() != StartElement)
            continue;
        if (name() == u"metrics")
            _readRoot();
        else
            _fail(u"no metrics in the document"_s);
    }
    return _finish();
}

void UserMetricsReader::_readRoot()
{
    QString id;
    while (readNextStartElement()) {
        if (name() == u"id")
            _readNextText(id);
        else
            skipCurrentElement();
    }
    if (!hasError())
        m_metrics->_setId(id);
}
