#include "taskdb/IdText.h"

#include <array>

namespace {

/// The value of a hexadecimal digit; larger than 15 for any other character.
constexpr uint digitValue(char16_t c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    return 0x100;
}

bool isBraced(QStringView text)
{
    return text.size() == 38 && text[0] == u'{' && text[9] == u'-' && text[14] == u'-' &&
           text[19] == u'-' && text[24] == u'-' && text[37] == u'}';
}

} // namespace

QUuid idFromText(QStringView text)
{
    // Where the sixteen pairs of digits begin in the braced form.
    static constexpr std::array<quint8, 16> pairs{1,  3,  5,  7,  10, 12, 15, 17,
                                                  20, 22, 25, 27, 29, 31, 33, 35};
    if (!isBraced(text))
        return QUuid::fromString(text);
    std::array<char, 16> bytes{};
    uint all = 0;
    for (size_t i = 0; i < pairs.size(); ++i) {
        const uint value = digitValue(text[pairs[i]].unicode()) << 4 |
                           digitValue(text[pairs[i] + 1].unicode());
        all |= value;
        bytes[i] = static_cast<char>(value);
    }
    return all > 0xFF ? QUuid() : QUuid::fromRfc4122(QByteArrayView(bytes.data(), bytes.size()));
}
