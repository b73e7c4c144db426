// The preferences of this platform.
#pragma once

class PrefsDialog;
class QWidget;

namespace prefs {

/// Whether there is a preferences dialog to offer.
[[nodiscard]] bool hasPrefsDialog();

/// A new dialog, to be shown by exec(); the caller owns it.
[[nodiscard]] PrefsDialog* dialogForPlatform(QWidget* parent);

/// Runs the dialog, unless it is open already. Returns when it is closed.
void showDialog(QWidget* parent);

} // namespace prefs
