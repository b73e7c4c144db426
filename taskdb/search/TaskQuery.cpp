#include "taskdb/search/TaskQuery.h"

#include <algorithm>

namespace {

constexpr auto nowhere = std::u16string_view::npos;

bool startsWord(std::u16string_view text, std::size_t place)
{
    return place == 0 || !QChar(text[place - 1]).isLetterOrNumber();
}

/// Whether the word, which was found at `place`, starts a word there or further on.
bool startsSomeWord(std::u16string_view text, const std::u16string& word, std::size_t place)
{
    while (place != nowhere && !startsWord(text, place))
        place = text.find(word, place + 1);
    return place != nowhere;
}

} // namespace

TaskQuery::TaskQuery(const QString& text)
{
    const FoldedText folded(text);
    const std::u16string_view view = folded.view();
    for (std::size_t begin = 0; begin < view.size();) {
        const std::size_t end = std::min(view.find(u' ', begin), view.size());
        if (end > begin)
            m_words.append(std::u16string(view.substr(begin, end - begin)));
        begin = end + 1;
    }
}

TaskQuery::ERank TaskQuery::match(QStringView name, QStringView notes) const
{
    return matchFolded(FoldedText(name).view(), FoldedText(notes).view());
}

TaskQuery::ERank TaskQuery::matchFolded(std::u16string_view name, std::u16string_view notes) const
{
    bool inName = true;
    for (const std::u16string& word : m_words) {
        const std::size_t place = name.find(word);
        if (place == nowhere && notes.find(word) == nowhere)
            return NoMatch;
        inName = inName && startsSomeWord(name, word, place);
    }
    if (isEmpty())
        return NoMatch;
    if (!inName)
        return Elsewhere;
    return _startsWithText(name) ? StartsName : StartsWords;
}

/// Any number of blanks counts as one.
bool TaskQuery::_startsWithText(std::u16string_view name) const
{
    const auto skipBlanks = [&name] {
        name.remove_prefix(std::min(name.find_first_not_of(u' '), name.size()));
    };
    skipBlanks();
    for (qsizetype i = 0; i < m_words.size(); ++i) {
        const std::size_t before = name.size();
        if (i > 0)
            skipBlanks();
        if ((i > 0 && name.size() == before) || !name.starts_with(m_words.at(i)))
            return false;
        name.remove_prefix(m_words.at(i).size());
    }
    return true;
}

QList<TaskQuery::Range> TaskQuery::ranges(QStringView text) const
{
    FoldedText folded;
    folded.assignWithPlaces(text);
    const std::u16string_view view = folded.view();
    std::vector<bool> isPart(view.size());
    for (const std::u16string& word : m_words) {
        for (std::size_t at = view.find(word); at != nowhere; at = view.find(word, at + 1))
            std::fill_n(isPart.begin() + static_cast<std::ptrdiff_t>(at), word.size(), true);
    }
    QList<Range> result;
    for (std::size_t unit = 0; unit < isPart.size(); ++unit) {
        if (!isPart[unit])
            continue;
        const qsizetype start = folded.placeOf(unit);
        while (unit < isPart.size() && isPart[unit])
            ++unit;
        result.append({start, folded.placeOf(unit) - start});
    }
    return result;
}

qsizetype TaskQuery::placeInNotes(QStringView name, QStringView notes) const
{
    const FoldedText foldedName(name);
    FoldedText foldedNotes;
    foldedNotes.assignWithPlaces(notes);
    std::size_t first = nowhere;
    for (const std::u16string& word : m_words) {
        if (foldedName.view().find(word) == nowhere)
            first = std::min(first, foldedNotes.view().find(word));
    }
    return first == nowhere ? -1 : foldedNotes.placeOf(first);
}
