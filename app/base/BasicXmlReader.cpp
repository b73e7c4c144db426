#include "app/base/BasicXmlReader.h"

#include "app/base/LogHelper.h"

using namespace Qt::StringLiterals;

void BasicXmlReader::_fail(const QString& message)
{
    MVR_LOG_ERR(u"Xml reader failed: "_s + message);
    raiseError(message);
}

bool BasicXmlReader::_readNextText(QString& text)
{
    // Keeps the capacity of a string that a caller uses again.
    text.resize(0);
    while (!hasError()) {
        switch (readNext()) {
        case Characters:
            // The usual text comes whole, and then takes just the memory it needs.
            if (text.isEmpty() && text.capacity() < QXmlStreamReader::text().size())
                text.reserve(QXmlStreamReader::text().size());
            text.append(QXmlStreamReader::text());
            break;
        case Comment:
        case ProcessingInstruction:
            break;
        case EndElement:
            return true;
        case Invalid:
            break;
        default:
            _fail({});
        }
    }
    return false;
}
