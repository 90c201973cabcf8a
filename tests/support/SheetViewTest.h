// A view with a preferences sheet, and a user who types, presses and chooses.
#pragma once

#include <chrono>

#include "engine/CollectionScan.h"
#include "engine/PreferencesSheet.h"
#include "tests/support/FakeFolderChooser.h"
#include "tests/support/FakeHelpPanel.h"
#include "tests/support/FakeSheet.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ViewTest.h"

namespace lumivane {

class SheetViewTest : public ViewTest {
 protected:
  SheetViewTest() {
    configureSheet = &sheet;
    folderChooser = &chooser;
    helpPanel = &help;
    workspace = &desktop;
    folders.home = "/home/me";
    // A walk takes what is there, not what an index knows.
    configure([](DisplaySettings& s) {
      s.useSpotlight_ = false;
      s.excludekB_ = 0;
    });
  }

  [[nodiscard]] SheetActions& actions() { return *sheet.actions; }
  [[nodiscard]] const DisplaySettings& settings() const { return view->settings(); }
  [[nodiscard]] DisplaySettings stored(const std::string& display = "Color LCD") {
    RecordingLog quiet;
    SettingsStore store{files, quiet, folders.config};
    return PreferencesStore{store, quiet}.load(display);
  }

  // What the user does, control by control.
  void type(SheetControl control, const std::string& text_, void (SheetActions::*action)()) {
    sheet.texts[control] = text_;
    (actions().*action)();
  }
  void tick(SheetControl control, bool on, void (SheetActions::*action)()) {
    sheet.on[control] = on;
    (actions().*action)();
  }
  void choose(SheetControl control, std::optional<std::size_t> row, void (SheetActions::*action)()) {
    sheet.selected[control] = row;
    (actions().*action)();
  }
  void close() { actions().closeSheet(); }

  // A rescan that is due shows as a blanked count and a chooser that is held.
  [[nodiscard]] bool rescanIsDue() { return sheet.count() == " " && !chooserEnabled(); }
  [[nodiscard]] bool chooserEnabled() const { return sheet.enabled(SheetControl::currentScreenView_); }

  // Whether the next beat changes the picture: a new cycle was started.
  [[nodiscard]] bool changeIsDue() {
    const Layer* before = view->currentLayer();
    beat();
    return view->currentLayer() != before;
  }

  // A view that shows a picture and whose next change is far away.
  void startShow(std::size_t pictures = 5) {
    listPictures(pictures);
    start();
    run(Seconds{0.1});
    ASSERT_FALSE(view->filename().empty());
    log.clear();
  }

  // Lets the walk, which takes real time, run to its end in virtual time.
  void runScan() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (view->queryIsInProgress() && std::chrono::steady_clock::now() < deadline) {
      run(Seconds{0.25});
      loop.letOthersWork();
    }
    ASSERT_FALSE(view->queryIsInProgress());
  }

  [[nodiscard]] std::string listFile(const std::string& display = "Color LCD") const {
    const auto found = files.content.find(folders.data + "/" + imageListFileName(fileNameToken(display)));
    return found == files.content.end() ? "(none)" : found->second;
  }
  [[nodiscard]] std::string identity() const { return formattedPointer(view.get()); }
  [[nodiscard]] static std::string formattedPointer(const void* pointer) {
    char text_[32];
    std::snprintf(text_, sizeof text_, "%p", pointer);
    return text_;
  }

  FakeSheet sheet{log};
  FakeFolderChooser chooser;
  FakeHelpPanel help;
  FakeWorkspace desktop;
};

}  // namespace lumivane
