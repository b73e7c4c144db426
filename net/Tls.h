// Bringing in the toolkit's TLS plug-in.
#pragma once

namespace net {

/// Loads the plug-in where it was not found: the program runs with empty plug-in paths, and
/// loading it at start would delay the window. Cheap after the first call; any thread.
void ensureTls();

} // namespace net
