#include "taskdb/search/FoldedText.h"

#include <QChar>
#include <QString>

#include <array>

namespace {

constexpr char16_t dropped = 0;
constexpr char16_t plainI = u'\u0438'; // Russian
constexpr char16_t shortI = u'\u0439';
constexpr char16_t breve = u'\u0306';

using FoldTable = std::array<char16_t, 0x10000>;

/// The first letter of the canonical decomposition.
QChar baseOf(QChar c)
{
    // A syllable's first consonant stands for none of its others.
    const bool isHangulSyllable = c.unicode() >= 0xAC00 && c.unicode() <= 0xD7A3;
    while (!isHangulSyllable && c.toCaseFolded() != QChar(shortI) &&
           c.decompositionTag() == QChar::Canonical)
        c = c.decomposition().front();
    return c;
}

char16_t foldedUnit(QChar c)
{
    if (c.isSurrogate())
        return c.unicode();
    if (c.isMark() || c.category() == QChar::Other_Format)
        return dropped;
    if (c.isSpace())
        return u' ';
    return baseOf(baseOf(c).toCaseFolded()).unicode();
}

const FoldTable& foldTable()
{
    static const FoldTable table = [] {
        FoldTable made{};
        for (std::size_t c = 0; c < made.size(); ++c)
            made[c] = foldedUnit(QChar(static_cast<char16_t>(c)));
        return made;
    }();
    return table;
}

} // namespace

template <typename Note>
void FoldedText::_fold(QStringView text, const Note& note)
{
    const FoldTable& table = foldTable();
    if (m_units.size() < static_cast<std::size_t>(text.size()))
        m_units.resize(static_cast<std::size_t>(text.size()));
    const char16_t* source = text.utf16();
    char16_t* const begin = m_units.data();
    char16_t* end = begin;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = table[source[i]];
        if (unit != dropped) [[likely]] {
            note(i);
            *end++ = unit;
        } else if (source[i] == breve && end != begin && end[-1] == plainI) {
            end[-1] = shortI;
        }
    }
    m_size = static_cast<std::size_t>(end - begin);
}

void FoldedText::assign(QStringView text)
{
    _fold(text, [](qsizetype) {});
}

void FoldedText::assignWithPlaces(QStringView text)
{
    m_places.clear();
    _fold(text, [this](qsizetype place) { m_places.push_back(place); });
    m_places.push_back(text.size());
}
