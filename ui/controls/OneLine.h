// Text for what has a single line.
#pragma once

class QString;

namespace fancy {

/// The text with a blank in the place of each line break and tab.
[[nodiscard]] QString onOneLine(QString text);

} // namespace fancy
