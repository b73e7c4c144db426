// Text in the form in which it is compared: without regard to case and accents.
#pragma once

#include <QList>
#include <QStringView>

#include <string_view>
#include <vector>

/// A text folded unit by unit: letters in lower case and without their accents, blanks of any kind
/// as U+0020, marks and invisible characters left out. The Russian short i stays a letter of its
/// own. The table for this is made on first use, which takes a few milliseconds.
class FoldedText
{
public:
    FoldedText() = default;
    explicit FoldedText(QStringView text) { assign(text); }

    /// Folds another text; the memory of earlier ones is used again.
    void assign(QStringView text);
    /// As assign(), and remembers where each unit comes from.
    void assignWithPlaces(QStringView text);

    /// Valid until another text is assigned.
    [[nodiscard]] std::u16string_view view() const { return {m_units.data(), m_size}; }
    /// Where a unit of view() begins in the original text; for its end, the original's length. To
    /// be called after assignWithPlaces().
    [[nodiscard]] qsizetype placeOf(std::size_t unit) const { return m_places.at(unit); }

private:
    template <typename Note>
    void _fold(QStringView text, const Note& note);

    std::vector<char16_t> m_units; // at least m_size
    std::size_t m_size = 0;
    std::vector<qsizetype> m_places;
};
