#include "app/base/UserMetricsWriter.h"

#include "app/base/UserMetrics.h"

#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

bool UserMetricsWriter::write(QIODevice* device, const UserMetrics& metrics) const
{
    QXmlStreamWriter xml(device);
    xml.writeStartDocument();
    xml.writeStartElement(u"metrics"_s);
    xml.writeTextElement(u"id"_s, metrics._id());
    xml.writeEndElement();
    xml.writeEndDocument();
    return !xml.hasError();
}
