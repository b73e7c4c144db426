#include "taskdb/IdText.h"

#include <array>

namespace {

constexpr quint8 noDigit = 0xFF;

/// The values of the hexadecimal digits among the first 128 characters.
constexpr std::array<quint8, 128> makeDigits()
{
    std::array<quint8, 128> values{};
    values.fill(noDigit);
    for (quint8 i = 0; i < 10; ++i)
        values[u'0' + i] = i;
    for (quint8 i = 0; i < 6; ++i)
        values[u'a' + i] = values[u'A' + i] = static_cast<quint8>(10 + i);
    return values;
}

constexpr std::array<quint8, 128> digits = makeDigits();

/// Larger than 15 for any character that is no hexadecimal digit.
quint8 digitValue(QChar c)
{
    return c.unicode() < digits.size() ? digits[c.unicode()] : noDigit;
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
    quint8 all = 0;
    for (size_t i = 0; i < pairs.size(); ++i) {
        const quint8 high = digitValue(text[pairs[i]]);
        const quint8 low = digitValue(text[pairs[i] + 1]);
        all |= high | low;
        bytes[i] = static_cast<char>(high << 4 | (low & 0xF));
    }
    return all > 0xF ? QUuid() : QUuid::fromRfc4122(QByteArrayView(bytes.data(), bytes.size()));
}
