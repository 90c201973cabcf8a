#include "app/MenuCommand.h"

#include <string>

namespace lumivane {
namespace {

TEST(MenuCommand, hasItsShortcuts) {
  EXPECT_EQ(menuCommandOf({U',', kControlModifier, false}), MenuCommand::Preferences);
  EXPECT_EQ(menuCommandOf({U'q', kControlModifier, false}), MenuCommand::Quit);
  EXPECT_EQ(menuCommandOf({kF1Character, kNoModifiers, false}), MenuCommand::Help);
  EXPECT_EQ(menuCommandOf({kF11Character, kNoModifiers, false}), MenuCommand::FullScreen);
}

TEST(MenuCommand, leavesTheShowItsKeys) {
  for (const char32_t key : std::u32string{U'q', U',', U'f', U' ', kEscapeCharacter, kF1Character + 1})
    EXPECT_FALSE(menuCommandOf({key, kNoModifiers, false}));
  EXPECT_FALSE(menuCommandOf({U'q', kControlModifier | kShiftModifier, false}));
  EXPECT_FALSE(menuCommandOf({kF11Character, kAltModifier, false}));
}

TEST(MenuCommand, aKeyThatIsHeldDownCountsOnce) {
  EXPECT_FALSE(menuCommandOf({kF11Character, kNoModifiers, true}));
}

}  // namespace
}  // namespace lumivane
