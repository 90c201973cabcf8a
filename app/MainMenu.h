// The menu over the picture: preferences, help, full screen, quit, each with the key that does the same.
//
// Threads: main only.
// Owns:    the menu; its entries are laid out in resources/MasterViewController.ui.
// Units:   points of the window's content, y up.
// Errors:  none.
#pragma once

#include <functional>
#include <memory>

#include "app/MenuCommand.h"
#include "platform/Geometry.h"

class QMenu;
class QWindow;

namespace lumivane {

class MainMenu {
 public:
  using Chosen = std::function<void(MenuCommand command)>;

  // The window must outlive the menu.
  MainMenu(QWindow& window, Chosen chosen);
  ~MainMenu();
  MainMenu(const MainMenu&) = delete;
  MainMenu& operator=(const MainMenu&) = delete;

  // Opens the menu at a place of the window; the full-screen entry is ticked when the window fills the screen.
  void popUp(PointPt place, bool fullScreen);

 private:
  struct Entries;

  QWindow& window_;
  std::unique_ptr<QMenu> menu_;
  std::unique_ptr<Entries> entries_;
};

}  // namespace lumivane
