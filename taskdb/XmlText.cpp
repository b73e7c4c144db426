#include "taskdb/XmlText.h"

#include <algorithm>

namespace {

/// How many code units from `at` on form a character that XML 1.0 allows; 0 for none.
int allowedUnits(QStringView text, qsizetype at)
{
    const char16_t unit = text[at].unicode();
    if (unit >= 0x20 && unit < 0xD800)
        return 1;
    if (unit < 0x20)
        return unit == u'\t' || unit == u'\n' || unit == u'\r' ? 1 : 0;
    if (QChar::isHighSurrogate(unit))
        return at + 1 < text.size() && text[at + 1].isLowSurrogate() ? 2 : 0;
    return !QChar::isLowSurrogate(unit) && unit < 0xFFFE ? 1 : 0;
}

} // namespace

QString xmlText(const QString& text)
{
    // Nearly all text is returned as it is, after one quick look.
    const auto suspicious = [](QChar c) { return c.unicode() < 0x20 || c.unicode() >= 0xD800; };
    if (std::none_of(text.cbegin(), text.cend(), suspicious))
        return text;
    QString clean = text;
    for (qsizetype i = 0; i < text.size();) {
        const int units = allowedUnits(text, i);
        if (units == 0)
            clean[i] = QChar::ReplacementCharacter;
        i += qMax(units, 1);
    }
    return clean;
}
