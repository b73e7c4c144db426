// The keys that work all over the window.
#pragma once

#include <QKeySequence>

namespace shortcuts {

inline constexpr QKeyCombination newTask = Qt::CTRL | Qt::Key_N;
inline constexpr QKeyCombination editTask(Qt::Key_F2);
inline constexpr QKeyCombination previousGroup = Qt::CTRL | Qt::Key_PageUp;
inline constexpr QKeyCombination nextGroup = Qt::CTRL | Qt::Key_PageDown;
inline constexpr QKeyCombination exportTasks = Qt::CTRL | Qt::SHIFT | Qt::Key_E;
inline constexpr QKeyCombination find = Qt::CTRL | Qt::Key_F;
inline constexpr QKeyCombination commands(Qt::Key_F1);
inline constexpr QKeyCombination undo = Qt::CTRL | Qt::Key_Z;
inline constexpr QKeyCombination redo = Qt::CTRL | Qt::SHIFT | Qt::Key_Z;
inline constexpr QKeyCombination redoToo = Qt::CTRL | Qt::Key_Y;
inline constexpr QKeyCombination hideWindow = Qt::CTRL | Qt::Key_W;
inline constexpr QKeyCombination quit = Qt::CTRL | Qt::Key_Q;
/// How many groups, from the top, have a key.
inline constexpr int groups = 9;

/// The key of the n-th group, counted from 0; an empty sequence for those without.
[[nodiscard]] inline QKeySequence nthGroup(qsizetype index)
{
    if (index < 0 || index >= groups)
        return {};
    return QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + static_cast<int>(index)));
}

/// As tool tips show it, in the language of the moment.
[[nodiscard]] inline QString textOf(const QKeySequence& keys)
{
    return keys.toString(QKeySequence::NativeText);
}

} // namespace shortcuts
