// Tool tips for texts that users wrote.
#pragma once

#include <QString>

/// The text for a tool tip, which guesses its format: escaped, with its line breaks, broken where
/// a word is too long, and cut where it is more than anybody reads in one.
[[nodiscard]] QString plainToolTip(const QString& text);
