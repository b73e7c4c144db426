// Making any text fit into an XML 1.0 document.
#pragma once

#include <QString>

/// `text` with every code unit that XML 1.0 cannot hold (control characters, lone surrogates,
/// U+FFFE, U+FFFF) replaced by U+FFFD. Text without any is returned as it is, shared.
[[nodiscard]] QString xmlText(const QString& text);
