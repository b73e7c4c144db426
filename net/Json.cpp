#include "net/Json.h"

#include <QVariantHash>
#include <QVariantMap>

#include <optional>

using namespace Qt::StringLiterals;

namespace QtJson {

/// A text, how far it is read and how many arrays and objects are open there.
struct Json::Input
{
    const QStringView text;
    qsizetype at = 0;
    int depth = 0;
};

namespace {

constexpr int unitDigits = 4;

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isInNumber(QChar c)
{
    return isDigit(c) || c == u'+' || c == u'-' || c == u'.' || c == u'e' || c == u'E';
}

/// The code unit of four hexadecimal digits, or 0 where any is none.
QChar codeUnit(QStringView digits)
{
    char16_t unit = 0;
    for (const QChar digit : digits) {
        const char16_t c = digit.unicode();
        int value = 0;
        if (c >= u'0' && c <= u'9')
            value = c - u'0';
        else if (c >= u'a' && c <= u'f')
            value = c - u'a' + 10;
        else if (c >= u'A' && c <= u'F')
            value = c - u'A' + 10;
        else
            return QChar();
        unit = static_cast<char16_t>(unit << 4 | value);
    }
    return unit;
}

/// What a backslash and this letter stand for.
std::optional<QChar> unescaped(QChar letter)
{
    switch (letter.unicode()) {
    case u'"':
    case u'\\':
    case u'/':
        return letter;
    case u'b':
        return u'\b';
    case u'f':
        return u'\f';
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u't':
        return u'\t';
    default:
        return {};
    }
}

/// What is written after a backslash for this character, or 0 where it stands for itself.
char escapeLetter(char c)
{
    switch (c) {
    case '"':
    case '\\':
        return c;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

QByteArray numberText(double value)
{
    QByteArray text = QByteArray::number(value, 'g', 20);
    // Without a point it would be read back as an integer.
    if (!text.contains('.') && !text.contains('e'))
        text += ".0";
    return text;
}

template <typename T>
std::optional<T> converted(const QVariant& data)
{
    T value{};
    if (data.canConvert<T>() &&
        QMetaType::convert(data.metaType(), data.constData(), QMetaType::fromType<T>(), &value))
        return value;
    return {};
}

} // namespace

QVariant Json::parse(const QString& json, bool& success)
{
    success = true;
    if (json.isNull())
        return {};
    Input input{json};
    const QVariant value = parseValue(input, success);
    return success ? value : QVariant();
}

QVariant Json::parse(const QString& json)
{
    bool ignored = false;
    return parse(json, ignored);
}

QByteArray Json::serialize(const QVariant& data, bool& success)
{
    success = true;
    switch (data.typeId()) {
    case QMetaType::UnknownType:
        return "null"_ba;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return _serializeList(data.toList(), success);
    case QMetaType::QVariantHash:
        return _serializeObject(data.toHash(), success);
    case QMetaType::QVariantMap:
        return _serializeObject(data.toMap(), success);
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return sanitizeString(data.toString());
    case QMetaType::Double:
        return numberText(data.toDouble());
    case QMetaType::Bool:
        return data.toBool() ? "true"_ba : "false"_ba;
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return QByteArray::number(data.toULongLong());
    default:
        return _serializeConverted(data, success);
    }
}

QByteArray Json::serialize(const QVariant& data)
{
    bool ignored = false;
    return serialize(data, ignored);
}

Json::EToken Json::nextToken(Input& input)
{
    eatWhitespace(input);
    if (input.at == input.text.size())
        return EToken::None;
    const auto punctuation = [&input](EToken token) {
        ++input.at;
        return token;
    };
    const QChar c = input.text.at(input.at);
    switch (c.unicode()) {
    case u'{':
        return punctuation(EToken::ObjectOpen);
    case u'}':
        return punctuation(EToken::ObjectClose);
    case u'[':
        return punctuation(EToken::ArrayOpen);
    case u']':
        return punctuation(EToken::ArrayClose);
    case u':':
        return punctuation(EToken::Colon);
    case u',':
        return punctuation(EToken::Comma);
    case u'"':
        return EToken::String;
    default:
        return c == u'-' || isDigit(c) ? EToken::Number : _word(input);
    }
}

Json::EToken Json::lookAhead(const Input& input)
{
    Input copy = input;
    return nextToken(copy);
}

Json::EToken Json::_word(Input& input)
{
    static constexpr std::pair<QLatin1StringView, EToken> words[] = {
        {"true"_L1, EToken::True}, {"false"_L1, EToken::False}, {"null"_L1, EToken::Null}};
    const QStringView rest = input.text.sliced(input.at);
    for (const auto& [word, token] : words) {
        if (rest.startsWith(word)) {
            input.at += word.size();
            return token;
        }
    }
    return EToken::None;
}

void Json::eatWhitespace(Input& input)
{
    while (input.at < input.text.size() && isBlank(input.text.at(input.at)))
        ++input.at;
}

qsizetype Json::lastIndexOfNumber(const Input& input)
{
    qsizetype end = input.at;
    while (end < input.text.size() && isInNumber(input.text.at(end)))
        ++end;
    return end - 1;
}

QVariant Json::parseValue(Input& input, bool& success)
{
    const EToken token = lookAhead(input);
    switch (token) {
    case EToken::ObjectOpen:
    case EToken::ArrayOpen: {
        if (input.depth == maxDepth)
            break;
        ++input.depth;
        QVariant value =
            token == EToken::ArrayOpen ? parseArray(input, success) : parseObject(input, success);
        --input.depth;
        return value;
    }
    case EToken::String:
        return parseString(input, success);
    case EToken::Number:
        return parseNumber(input);
    case EToken::True:
    case EToken::False:
        nextToken(input);
        return token == EToken::True;
    case EToken::Null:
        nextToken(input);
        return {};
    default:
        break;
    }
    success = false;
    return {};
}

/// Reads elements up to the bracket that closes them, with any number of commas between. Returns
/// false where an element failed or the text ended.
template <typename ReadElement>
bool Json::_parseElements(Input& input, EToken close, ReadElement readElement)
{
    nextToken(input);
    for (;;) {
        const EToken token = lookAhead(input);
        if (token == EToken::None)
            return false;
        if (token == EToken::Comma || token == close) {
            nextToken(input);
            if (token == close)
                return true;
        } else if (!readElement()) {
            return false;
        }
    }
}

QVariant Json::parseObject(Input& input, bool& success)
{
    QVariantMap map;
    success = _parseElements(input, EToken::ObjectClose, [&] {
        const QString key = parseString(input, success);
        if (!success || nextToken(input) != EToken::Colon)
            return false;
        map.insert(key, parseValue(input, success));
        return success;
    });
    return map;
}

QVariant Json::parseArray(Input& input, bool& success)
{
    QVariantList list;
    success = _parseElements(input, EToken::ArrayClose, [&] {
        list.append(parseValue(input, success));
        return success;
    });
    return list;
}

QString Json::parseString(Input& input, bool& success)
{
    const QStringView text = input.text;
    qsizetype& at = input.at;
    eatWhitespace(input);
    ++at; // Whatever stands there is taken for the opening quote.
    QString result = u""_s;
    while (at < text.size()) {
        const qsizetype start = at;
        while (at < text.size() && text.at(at) != u'"' && text.at(at) != u'\\')
            ++at;
        result += text.sliced(start, at - start);
        if (at == text.size())
            break;
        if (text.at(at++) == u'"')
            return result;
        if (at == text.size())
            break;
        const QChar letter = text.at(at++);
        if (letter == u'u') {
            if (text.size() - at < unitDigits)
                break;
            result += codeUnit(text.sliced(at, unitDigits));
            at += unitDigits;
        } else if (const std::optional<QChar> character = unescaped(letter)) {
            result += *character;
        }
    }
    success = false;
    return {};
}

QVariant Json::parseNumber(Input& input)
{
    eatWhitespace(input);
    const qsizetype end = lastIndexOfNumber(input) + 1;
    const QStringView number = input.text.sliced(input.at, end - input.at);
    input.at = end;
    if (number.contains(u'.')) {
        bool fits = false;
        const double value = number.toDouble(&fits);
        return fits ? value : 0.0;
    }
    if (number.startsWith(u'-'))
        return number.toLongLong();
    return number.toULongLong();
}

QByteArray Json::_serializeList(const QVariantList& list, bool& success)
{
    QList<QByteArray> elements;
    elements.reserve(list.size());
    for (const QVariant& element : list) {
        elements += serialize(element, success);
        if (!success)
            return {};
    }
    return "[ " + join(elements, ", "_ba) + " ]";
}

template <typename Object>
QByteArray Json::_serializeObject(const Object& object, bool& success)
{
    QList<QByteArray> entries;
    entries.reserve(object.size());
    for (auto it = object.cbegin(); it != object.cend(); ++it) {
        entries += sanitizeString(it.key()) + " : " + serialize(it.value(), success);
        if (!success)
            return {};
    }
    return "{ " + join(entries, ", "_ba) + " }";
}

QByteArray Json::_serializeConverted(const QVariant& data, bool& success)
{
    if (const auto number = converted<qlonglong>(data))
        return QByteArray::number(*number);
    if (const auto text = converted<QString>(data))
        return sanitizeString(*text);
    success = false;
    return {};
}

QByteArray Json::sanitizeString(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    QByteArray result;
    result.reserve(utf8.size() + 2);
    result += '"';
    for (const char c : utf8) {
        const char letter = escapeLetter(c);
        if (letter)
            result += '\\';
        result += letter ? letter : c;
    }
    result += '"';
    return result;
}

QByteArray Json::join(const QList<QByteArray>& pieces, const QByteArray& separator)
{
    return pieces.join(separator);
}

} // namespace QtJson
