#include "platform/linux/QtKeyEvents.h"

#include <QChar>
#include <QList>

namespace lumivane {
namespace {

// Keys with a character of their own, whatever text they come with. 0 = another key.
char32_t characterOfNamedKey(int qtKey) {
  if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F35)
    return kF1Character + static_cast<char32_t>(qtKey - Qt::Key_F1);
  switch (qtKey) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return kReturnCharacter;
    case Qt::Key_Escape:
      return kEscapeCharacter;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      return kDeleteCharacter;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return kTabCharacter;
    case Qt::Key_Up:
      return kUpArrowCharacter;
    case Qt::Key_Down:
      return kDownArrowCharacter;
    case Qt::Key_Left:
      return kLeftArrowCharacter;
    case Qt::Key_Right:
      return kRightArrowCharacter;
    default:
      return 0;
  }
}

// The case follows Shift alone: with Caps Lock on, "z" is still "z".
char32_t inCaseOf(Qt::KeyboardModifiers modifiers, char32_t character) {
  return modifiers.testFlag(Qt::ShiftModifier) ? QChar::toUpper(character) : QChar::toLower(character);
}

// What the key types. With Control held its text is a control character, and the key's own code is used instead.
char32_t typedCharacter(int qtKey, const QString& text) {
  const auto characters = text.toUcs4();
  if (characters.size() == 1 && QChar::isPrint(characters[0])) return characters[0];
  // Below, Qt's codes are those of Unicode; above are the keys that type nothing.
  return qtKey >= Qt::Key_Space && qtKey < Qt::Key_Escape ? static_cast<char32_t>(qtKey) : kOtherKeyCharacter;
}

}  // namespace

Modifiers modifiersFrom(Qt::KeyboardModifiers modifiers) {
  Modifiers result = kNoModifiers;
  if (modifiers.testFlag(Qt::ShiftModifier)) result |= kShiftModifier;
  if (modifiers.testFlag(Qt::ControlModifier)) result |= kControlModifier;
  if (modifiers.testFlag(Qt::AltModifier)) result |= kAltModifier;
  if (modifiers.testFlag(Qt::MetaModifier)) result |= kMetaModifier;
  return result;
}

std::optional<Modifiers> modifierOfKey(int qtKey) {
  switch (qtKey) {
    case Qt::Key_Shift:
      return kShiftModifier;
    case Qt::Key_Control:
      return kControlModifier;
    case Qt::Key_Alt:
      return kAltModifier;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
      return kMetaModifier;
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Mode_switch:
      return kNoModifiers;
    default:
      return std::nullopt;
  }
}

KeyEvent keyEventFrom(int qtKey, const QString& text, Qt::KeyboardModifiers modifiers, bool isRepeat) {
  KeyEvent event{characterOfNamedKey(qtKey), modifiersFrom(modifiers), isRepeat};
  if (event.character == 0) event.character = inCaseOf(modifiers, typedCharacter(qtKey, text));
  return event;
}

}  // namespace lumivane
