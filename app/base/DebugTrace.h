// Lines on the standard error stream, independent of the log.
#pragma once

#include <QString>

namespace debug {

/// Writes `text` and a line feed to standard error, as UTF-8. Any thread.
void trace(const QString& text);

} // namespace debug
