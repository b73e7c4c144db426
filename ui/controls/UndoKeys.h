// Undo keys where both an editor and its window can undo.
#pragma once

class QWidget;

/// Has a QLineEdit or QTextEdit keep the keys for undo and redo only as long as it has something to
/// undo or redo itself. Otherwise they are for the window's shortcuts, or for the parents; the
/// editor alone would swallow them. Ctrl+Y is redo as well, whatever the desktop.
void passUnusedUndo(QWidget* editor);
