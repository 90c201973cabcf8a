// A preferences sheet without a screen. A test types and presses; what the program shows of a scan and of the sheet's
// life stands in the log, between the program's own lines.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/Log.h"
#include "settings/ConfigureSheet.h"

namespace lumivane {

class FakeSheet final : public ConfigureSheet {
 public:
  explicit FakeSheet(Log& journal) : journal_(journal) {}

  SheetActions* actions = nullptr;
  std::map<SheetControl, std::string> texts;
  std::map<SheetControl, bool> on;
  std::map<SheetControl, float> sliders;
  std::map<SheetControl, std::vector<std::string>> items;
  std::map<SheetControl, std::optional<std::size_t>> selected;
  std::set<SheetControl> disabled;
  SliderRange dissolveRange = kCrossDissolveDurationRange;
  bool spinning = false;
  bool shown = false;
  int begins = 0;
  int ends = 0;

  [[nodiscard]] bool enabled(SheetControl control) const { return !disabled.contains(control); }
  [[nodiscard]] const std::string& count() { return texts[SheetControl::num_images_]; }

  void setActions(SheetActions* whom) override { actions = whom; }
  [[nodiscard]] std::string text(SheetControl control) const override {
    const auto found = texts.find(control);
    return found == texts.end() ? std::string() : found->second;
  }
  void setText(SheetControl control, const std::string& text) override {
    texts[control] = text;
    if (control == SheetControl::num_images_) journal_.information("sheet: count " + text);
  }
  [[nodiscard]] bool isOn(SheetControl control) const override {
    const auto found = on.find(control);
    return found != on.end() && found->second;
  }
  void setOn(SheetControl control, bool isOn) override { on[control] = isOn; }
  [[nodiscard]] SliderRange sliderRange(SheetControl /*control*/) const override { return dissolveRange; }
  void setSlider(SheetControl control, float value) override { sliders[control] = value; }
  void setItems(SheetControl control, const std::vector<std::string>& rows) override {
    items[control] = rows;
    selected[control].reset();
  }
  void selectItem(SheetControl control, std::optional<std::size_t> row) override { selected[control] = row; }
  [[nodiscard]] std::optional<std::size_t> selectedItem(SheetControl control) const override {
    const auto found = selected.find(control);
    return found == selected.end() ? std::nullopt : found->second;
  }
  void setEnabled(SheetControl control, bool isEnabled) override {
    if (isEnabled) disabled.erase(control);
    if (!isEnabled) disabled.insert(control);
    if (control == SheetControl::applyView_)
      journal_.information(isEnabled ? "sheet: apply enabled" : "sheet: apply disabled");
  }
  void setProgressSpinning(bool isSpinning) override {
    spinning = isSpinning;
    journal_.information(isSpinning ? "sheet: spins" : "sheet: stands");
  }
  void begin() override {
    shown = true;
    ++begins;
  }
  void end() override {
    shown = false;
    ++ends;
    journal_.information("sheet: ended");
  }
  [[nodiscard]] bool isShown() const override { return shown; }

 private:
  Log& journal_;
};

}  // namespace lumivane
