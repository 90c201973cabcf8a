#include "app/MainMenu.h"

#include <QMenu>
#include <QWindow>
#include <utility>

#include "ui_MasterViewController.h"

namespace lumivane {

struct MainMenu::Entries : Ui::MasterViewController {};

MainMenu::MainMenu(QWindow& window, Chosen chosen)
    : window_(window), menu_(std::make_unique<QMenu>()), entries_(std::make_unique<Entries>()) {
  entries_->setupUi(menu_.get());
  const auto on = [&](QAction* entry, MenuCommand command) {
    QObject::connect(entry, &QAction::triggered, menu_.get(), [chosen, command] { chosen(command); });
  };
  on(entries_->actionPreferences, MenuCommand::Preferences);
  on(entries_->actionHelp, MenuCommand::Help);
  on(entries_->actionFullScreen, MenuCommand::FullScreen);
  on(entries_->actionQuit, MenuCommand::Quit);
}

MainMenu::~MainMenu() = default;

void MainMenu::popUp(PointPt place, bool fullScreen) {
  entries_->actionFullScreen->setChecked(fullScreen);
  // A pop-up of no window is placed anywhere on Wayland, and behind a full-screen window on X11.
  menu_->winId();
  menu_->windowHandle()->setTransientParent(&window_);
  menu_->popup(window_.mapToGlobal(QPointF(place.x, window_.height() - place.y)).toPoint());
}

}  // namespace lumivane
