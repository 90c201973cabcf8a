// Qt's key events as the plain data of platform/Window.h.
//
// Threads: any; pure functions.
// Errors:  none.
#pragma once

#include <QString>
#include <optional>

#include "platform/Window.h"

namespace lumivane {

[[nodiscard]] Modifiers modifiersFrom(Qt::KeyboardModifiers modifiers);

// The bit of a modifier key; 0 for modifier keys without a bit (Caps Lock, AltGr). Absent: not a modifier key.
[[nodiscard]] std::optional<Modifiers> modifierOfKey(int qtKey);

// `qtKey` and `text` as QKeyEvent has them. Requires: the key is no modifier key.
[[nodiscard]] KeyEvent keyEventFrom(int qtKey, const QString& text, Qt::KeyboardModifiers modifiers,
                                    bool isRepeat);

}  // namespace lumivane
