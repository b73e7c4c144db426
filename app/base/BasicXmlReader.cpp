#include "app/base/BasicXmlReader.h"

#include "app/base/LogHelper.h"

using namespace Qt::StringLiterals;

void BasicXmlReader::_fail(const QString& message)
{
    MVR_LOG_ERR(u"Xml reader failed: "_s + message);
    raiseError(message);
}

bool BasicXmlReader::_finish() const
{
    // Failures of our own are in the log already.
    if (hasError() && error() != CustomError) {
        MVR_LOG_ERR(u"Xml reader failed: "_s + errorString() + u" (line "_s +
                    QString::number(lineNumber()) + u", column "_s +
                    QString::number(columnNumber()) + u')');
    }
    return !hasError();
}

bool BasicXmlReader::_readNextText(QString& text)
{
    text = QString();
    return _readChunks([&text](QStringView chunk) {
        // The usual text comes whole, and then takes just the memory it needs.
        if (text.isNull())
            text = chunk.toString();
        else
            text.append(chunk);
    });
}

bool BasicXmlReader::_readNextText(ShortText& text)
{
    text.clear();
    return _readChunks([&text](QStringView chunk) { text.append(chunk.data(), chunk.size()); });
}

template <typename Append>
bool BasicXmlReader::_readChunks(Append append)
{
    while (!hasError()) {
        switch (readNext()) {
        case Characters:
            append(text());
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
