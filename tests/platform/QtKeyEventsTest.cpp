#include "platform/linux/QtKeyEvents.h"

namespace lumivane {
namespace {

char32_t characterOf(int key, const char* text, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  return keyEventFrom(key, QString::fromUtf8(text), modifiers, false).character;
}

TEST(KeyEventFrom, IsTheTypedCharacter) {
  EXPECT_EQ(characterOf(Qt::Key_Z, "z"), U'z');
  EXPECT_EQ(characterOf(Qt::Key_Space, " "), U' ');
  EXPECT_EQ(characterOf(Qt::Key_Adiaeresis, "ä"), U'ä');
  EXPECT_EQ(characterOf(0x0416, "ж"), U'ж');
  EXPECT_EQ(characterOf(Qt::Key_5, "5", Qt::KeypadModifier), U'5');
}

TEST(KeyEventFrom, ShiftApplies) {
  EXPECT_EQ(characterOf(Qt::Key_Z, "Z", Qt::ShiftModifier), U'Z');
  EXPECT_EQ(characterOf(Qt::Key_Percent, "%", Qt::ShiftModifier), U'%');
}

TEST(KeyEventFrom, CapsLockDoesNot) {
  EXPECT_EQ(characterOf(Qt::Key_Z, "Z"), U'z');
  EXPECT_EQ(characterOf(Qt::Key_Z, "z", Qt::ShiftModifier), U'Z');
}

TEST(KeyEventFrom, ControlAltAndMetaDoNotChangeTheCharacter) {
  EXPECT_EQ(characterOf(Qt::Key_Z, "\x1A", Qt::ControlModifier), U'z');
  EXPECT_EQ(characterOf(Qt::Key_Z, "\x1A", Qt::ControlModifier | Qt::ShiftModifier), U'Z');
  EXPECT_EQ(characterOf(Qt::Key_F, "f", Qt::AltModifier), U'f');
  EXPECT_EQ(characterOf(Qt::Key_Comma, "", Qt::ControlModifier), U',');
  EXPECT_EQ(characterOf(Qt::Key_BracketLeft, "\x1B", Qt::ControlModifier), U'[');
}

TEST(KeyEventFrom, NamedKeysHaveCharactersOfTheirOwn) {
  EXPECT_EQ(characterOf(Qt::Key_Return, "\r"), U'\r');
  EXPECT_EQ(characterOf(Qt::Key_Enter, "\r", Qt::KeypadModifier), U'\r');
  EXPECT_EQ(characterOf(Qt::Key_Escape, "\x1B"), char32_t{0x1B});
  EXPECT_EQ(characterOf(Qt::Key_Delete, "\x7F"), char32_t{0x7F});
  EXPECT_EQ(characterOf(Qt::Key_Backspace, "\b"), char32_t{0x7F});
  EXPECT_EQ(characterOf(Qt::Key_Up, ""), char32_t{0xF700});
  EXPECT_EQ(characterOf(Qt::Key_Down, ""), char32_t{0xF701});
  EXPECT_EQ(characterOf(Qt::Key_Left, ""), char32_t{0xF702});
  EXPECT_EQ(characterOf(Qt::Key_Right, "", Qt::KeypadModifier), char32_t{0xF703});
}

TEST(KeyEventFrom, FunctionKeysAreNumbered) {
  EXPECT_EQ(characterOf(Qt::Key_F1, ""), kF1Character);
  EXPECT_EQ(characterOf(Qt::Key_F11, ""), kF11Character);
  EXPECT_EQ(characterOf(Qt::Key_F35, ""), kF35Character);
}

TEST(KeyEventFrom, OtherKeysAreKeysAllTheSame) {
  EXPECT_EQ(characterOf(Qt::Key_Home, ""), kOtherKeyCharacter);
  EXPECT_EQ(characterOf(Qt::Key_VolumeUp, ""), kOtherKeyCharacter);
  EXPECT_EQ(characterOf(0, ""), kOtherKeyCharacter);
}

TEST(KeyEventFrom, CarriesModifiersAndRepetition) {
  const KeyEvent event = keyEventFrom(Qt::Key_Left, "", Qt::ShiftModifier | Qt::MetaModifier, true);
  EXPECT_EQ(event, (KeyEvent{kLeftArrowCharacter, kShiftModifier | kMetaModifier, true}));
  EXPECT_EQ(modifiersFrom(Qt::ControlModifier | Qt::AltModifier | Qt::KeypadModifier),
            kControlModifier | kAltModifier);
}

TEST(ModifierOfKey, KnowsTheModifierKeys) {
  EXPECT_EQ(modifierOfKey(Qt::Key_Shift), kShiftModifier);
  EXPECT_EQ(modifierOfKey(Qt::Key_Super_L), kMetaModifier);
  EXPECT_EQ(modifierOfKey(Qt::Key_CapsLock), kNoModifiers);
  EXPECT_EQ(modifierOfKey(Qt::Key_A), std::nullopt);
}

}  // namespace
}  // namespace lumivane
