// Notes which actions the preferences sheet tells of, by their names, in order.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "settings/ConfigureSheet.h"

namespace lumivane {

class RecordingSheetActions final : public SheetActions {
 public:
  std::vector<std::string> calls;
  std::vector<float> numbers;        // that the sliders told
  std::function<void()> whenCalled;  // while the action runs

  void setDurationPerImage() override { note("setDurationPerImage"); }
  void setInitZoomInfactor() override { note("setInitZoomInfactor"); }
  void setExcludeSize() override { note("setExcludeSize"); }
  void setExcludekB() override { note("setExcludekB"); }
  void setSkipPatterns() override { note("setSkipPatterns"); }
  void textDidBeginEditing() override { note("textDidBeginEditing"); }
  void controlTextDidBeginEditing() override { note("controlTextDidBeginEditing"); }
  void setFontSize() override { note("setFontSize"); }
  void setInfoDelay() override { note("setInfoDelay"); }
  void setUseSpotlight() override { note("setUseSpotlight"); }
  void setShowImagePath() override { note("setShowImagePath"); }
  void setDisplayFilename() override { note("setDisplayFilename"); }
  void setShowFileExtension() override { note("setShowFileExtension"); }
  void setShowImageInfo() override { note("setShowImageInfo"); }
  void setZoomIsOn() override { note("setZoomIsOn"); }
  void setKenBurnsIsOn() override { note("setKenBurnsIsOn"); }
  void dontRandomize() override { note("dontRandomize"); }
  void startWithRandom() override { note("startWithRandom"); }
  void allowBlackBorders() override { note("allowBlackBorders"); }
  void newBlackBordersThreshold(float value) override { note("newBlackBordersThreshold", value); }
  void setCrossDissolve() override { note("setCrossDissolve"); }
  void newCrossDissolveDuration(float value) override { note("newCrossDissolveDuration", value); }
  void setEnableDeleteAtRuntime() override { note("setEnableDeleteAtRuntime"); }
  void changeScreen() override { note("changeScreen"); }
  void selectDirectory() override { note("selectDirectory"); }
  void rescanDirectory() override { note("rescanDirectory"); }
  void setUseAlbum() override { note("setUseAlbum"); }
  void setUseDirectoryTree() override { note("setUseDirectoryTree"); }
  void selectAlbum() override { note("selectAlbum"); }
  void showHelpSheet() override { note("showHelpSheet"); }
  void donateDonorbox() override { note("donateDonorbox"); }
  void feedback() override { note("feedback"); }
  void gotoHomepage() override { note("gotoHomepage"); }
  void closeSheet() override { note("closeSheet"); }

 private:
  void note(const char* action) {
    calls.emplace_back(action);
    if (whenCalled) whenCalled();
  }
  void note(const char* action, float number) {
    numbers.push_back(number);
    note(action);
  }
};

}  // namespace lumivane
