// Icons made of the pictures compiled into the program.
#pragma once

#include <QIcon>
#include <QStringList>

namespace icons {

/// Makes the pictures of the collection reachable under ":/"; further calls do nothing.
void initPictures();

/// An icon of these pictures, one for each size, together with their "@2x" variants. Names that
/// do not exist are left out; the icon is null if none is left.
/// Nothing is decoded before it is drawn, and each icon is sharp at any device pixel ratio, also
/// when its window moves to another screen.
[[nodiscard]] QIcon fromPictures(const QStringList& names);

} // namespace icons
