// Fuzzes the JSON codec: what was read must be written, and read again as the same, by another
// parser as well.
#include "net/Json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;
using QtJson::Json;

namespace {

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

/// What a string becomes in UTF-8, which has no place for half a surrogate pair.
QString asWritten(const QString& text)
{
    // At the very start a byte order mark would get lost.
    return QString::fromUtf8(' ' + text.toUtf8()).sliced(1);
}

/// Whether another parser read the same; it knows doubles with exponents, but no 64-bit integers
/// without a sign.
bool same(const QJsonValue& json, const QVariant& data)
{
    switch (data.typeId()) {
    case QMetaType::QVariantList: {
        const QVariantList list = data.toList();
        const QJsonArray array = json.toArray();
        return json.isArray() && array.size() == list.size() &&
               std::equal(list.cbegin(), list.cend(), array.cbegin(),
                          [](const QVariant& a, const QJsonValue& b) { return same(b, a); });
    }
    case QMetaType::QVariantMap: {
        const QVariantMap map = data.toMap();
        QVariantMap written;
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            written.insert(asWritten(it.key()), it.value());
        const QJsonObject object = json.toObject();
        bool equal = json.isObject() && object.size() == written.size();
        // Its own look-up misses some keys beyond U+FFFF.
        for (auto it = object.begin(); equal && it != object.end(); ++it)
            equal = written.contains(it.key()) && same(it.value(), written.value(it.key()));
        return equal;
    }
    case QMetaType::QString:
        return json.isString() && json.toString() == asWritten(data.toString());
    case QMetaType::Bool:
        return json.isBool() && json.toBool() == data.toBool();
    case QMetaType::UnknownType:
        return json.isNull();
    case QMetaType::LongLong:
        return json.isDouble() && json.toInteger(1) == data.toLongLong();
    default:
        return json.isDouble() && json.toDouble() == data.toDouble();
    }
}

/// Whether failing to read this is right although the other parser may take it: it goes deeper,
/// and takes numbers that begin with their point.
bool mayFail(const QByteArray& input)
{
    if (input.count('[') + input.count('{') > Json::maxDepth)
        return true;
    for (qsizetype at = input.indexOf('.'); at >= 0; at = input.indexOf('.', at + 1)) {
        if (at == 0 || input.at(at - 1) < '0' || input.at(at - 1) > '9')
            return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(bytes), qsizetype(size));
    bool read = false;
    const QVariant data = Json::parse(QString::fromUtf8(input), read);
    if (!read) {
        require(!data.isValid(), "a failed parse gives an invalid variant");
        require(mayFail(input) || QJsonDocument::fromJson(input).isNull(), "strict JSON is read");
        return 0;
    }

    bool written = false;
    const QByteArray text = Json::serialize(data, written);
    require(written && !text.isNull(), "what was read is written");
    bool readAgain = false;
    const QVariant again = Json::parse(QString::fromUtf8(text), readAgain);
    require(readAgain, "what was written is read");

    // The other parser drops a byte order mark that begins a string.
    if (text.contains("\xEF\xBB\xBF"))
        return 0;
    const QJsonDocument document = QJsonDocument::fromJson("[" + text + "]");
    require(document.isArray() && document.array().size() == 1, "strict parsers read it");
    require(same(document.array().at(0), data), "strict parsers read the same");
    // What is written with an exponent and no point reads as 0.
    if (!text.contains("e+") && !text.contains("e-"))
        require(same(document.array().at(0), again), "it reads as the same");
    return 0;
}
