// What the user looks for, and whether a task has it.
#pragma once

#include "taskdb/search/FoldedText.h"

#include <QList>
#include <QString>

#include <string>

/// The words of a text, to be found in any order, each as a part of a word, without regard to case
/// and accents. A value.
class TaskQuery
{
public:
    /// How well a task matches; the better, the lower.
    enum ERank
    {
        StartsName = 0,  ///< the name starts with the whole text
        StartsWords = 1, ///< each word starts a word of the name
        Elsewhere = 2,   ///< each word is a part of the name or the notes
        NoMatch = 3,
    };

    /// A stretch of a text, in UTF-16 code units.
    struct Range
    {
        qsizetype start = 0;
        qsizetype length = 0;
        bool operator==(const Range&) const = default;
    };

    explicit TaskQuery(const QString& text = {});

    /// Without words; matches nothing.
    [[nodiscard]] bool isEmpty() const { return m_words.isEmpty(); }
    [[nodiscard]] ERank match(QStringView name, QStringView notes = {}) const;
    /// The same for folded texts.
    [[nodiscard]] ERank matchFolded(std::u16string_view name, std::u16string_view notes) const;
    /// Where words stand in a text, in order, none overlapping another.
    [[nodiscard]] QList<Range> ranges(QStringView text) const;
    /// The first place in the notes of a word that the name lacks; -1 for none.
    [[nodiscard]] qsizetype placeInNotes(QStringView name, QStringView notes) const;

private:
    [[nodiscard]] bool _startsWithText(std::u16string_view name) const;

    QList<std::u16string> m_words;
};
