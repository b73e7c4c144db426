// JSON read leniently into Qt's variants, and written from them.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>

namespace QtJson {

/// Stateless; any thread. Reading takes time linear in the text and bounded stack. Numbers do not
/// depend on the locale.
///
/// Objects are QVariantMap, arrays QVariantList, "null" an invalid variant. A number is a double
/// where it has a point, else a qlonglong where it begins with "-", else a qulonglong.
class Json final
{
public:
    Json() = delete;

    /// Arrays and objects nested deeper do not parse.
    static constexpr int maxDepth = 1000;

    /// The first value of the text; what follows it is ignored. Commas may be missing or too many.
    /// Numbers that cannot be converted are 0. `success` tells whether there was a value; the
    /// result is invalid without. A null text is an invalid variant with success.
    [[nodiscard]] static QVariant parse(const QString& json, bool& success);
    [[nodiscard]] static QVariant parse(const QString& json);

    /// The value in UTF-8. Beyond what parse() gives it takes QVariantHash, QStringList,
    /// QByteArray (as UTF-8), and what Qt converts to a 64-bit integer or else to a string. Where
    /// anything in it is neither, `success` is false and the result null. Doubles that are not
    /// finite give text that is no JSON.
    [[nodiscard]] static QByteArray serialize(const QVariant& data, bool& success);
    [[nodiscard]] static QByteArray serialize(const QVariant& data);

private:
    enum class EToken
    {
        None = 0,
        ObjectOpen = 1,
        ObjectClose = 2,
        ArrayOpen = 3,
        ArrayClose = 4,
        Colon = 5,
        Comma = 6,
        String = 7,
        Number = 8,
        True = 9,
        False = 10,
        Null = 11
    };
    struct Input;

    /// Skips whitespace and tells the token there. Steps over it, unless it is a string or number.
    static EToken nextToken(Input& input);
    static EToken lookAhead(const Input& input);
    static EToken _word(Input& input);
    static void eatWhitespace(Input& input);
    static qsizetype lastIndexOfNumber(const Input& input);

    // These leave `success` alone unless they fail; what they return then means nothing.
    static QVariant parseValue(Input& input, bool& success);
    template <typename ReadElement>
    static bool _parseElements(Input& input, EToken close, ReadElement readElement);
    static QVariant parseObject(Input& input, bool& success);
    static QVariant parseArray(Input& input, bool& success);
    static QString parseString(Input& input, bool& success);
    static QVariant parseNumber(Input& input);

    static QByteArray _serializeList(const QVariantList& list, bool& success);
    template <typename Object>
    static QByteArray _serializeObject(const Object& object, bool& success);
    static QByteArray _serializeConverted(const QVariant& data, bool& success);
    static QByteArray sanitizeString(const QString& text);
    static QByteArray join(const QList<QByteArray>& pieces, const QByteArray& separator);
};

} // namespace QtJson
