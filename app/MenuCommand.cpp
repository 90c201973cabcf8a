#include "app/MenuCommand.h"

namespace lumivane {

std::optional<MenuCommand> menuCommandOf(const KeyEvent& event) {
  if (event.isRepeat) return std::nullopt;
  if (event.modifiers == kControlModifier) {
    if (event.character == U',') return MenuCommand::Preferences;
    if (event.character == U'q') return MenuCommand::Quit;
  }
  if (event.modifiers == kNoModifiers) {
    if (event.character == kF1Character) return MenuCommand::Help;
    if (event.character == kF11Character) return MenuCommand::FullScreen;
  }
  return std::nullopt;
}

}  // namespace lumivane
