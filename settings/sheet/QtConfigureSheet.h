// The preferences sheet as a dialog over the slideshow's window. Its layout is resources/ConfigureSheet.ui.
//
// Threads: main only; made after QApplication.
// Owns:    the dialog with all controls.
// Units:   as in ConfigureSheet.h.
// Errors:  as in ConfigureSheet.h.
#pragma once

#include <initializer_list>
#include <map>
#include <memory>

#include "platform/widgets/DialogOverWindow.h"
#include "settings/ConfigureSheet.h"
#include "settings/sheet/PatternsField.h"
#include "settings/sheet/SheetDialog.h"

class QAbstractButton;
class QSpacerItem;

namespace Ui {
class ConfigureSheet;
}

namespace lumivane {

class RangeSlider;
class ValueLabel;

// Fields tell when they are left, and when Return is pressed, what was typed into them; no field tells that typing
// begins in it: whether there is anything to collect anew is known once the number is. The skip patterns tell both.
// There is no way to close the dialog but closeSheet(): Escape and the window's close button press applyView_.
class QtConfigureSheet final : public ConfigureSheet {
 public:
  QtConfigureSheet(WindowSource window, PatternCheck check);
  ~QtConfigureSheet() override;

  void setActions(SheetActions* actions) override { actions_ = actions; }
  [[nodiscard]] std::string text(SheetControl control) const override;
  void setText(SheetControl control, const std::string& text) override;
  [[nodiscard]] bool isOn(SheetControl control) const override;
  void setOn(SheetControl control, bool on) override;
  [[nodiscard]] SliderRange sliderRange(SheetControl control) const override;
  void setSlider(SheetControl control, float value) override;
  void setItems(SheetControl control, const std::vector<std::string>& items) override;
  void selectItem(SheetControl control, std::optional<std::size_t> row) override;
  [[nodiscard]] std::optional<std::size_t> selectedItem(SheetControl control) const override;
  void setEnabled(SheetControl control, bool enabled) override;
  void setProgressSpinning(bool spinning) override;
  void begin() override;
  void end() override;
  [[nodiscard]] bool isShown() const override;

  [[nodiscard]] QWidget& widget(SheetControl control) const { return *widgets_.at(control); }
  [[nodiscard]] SheetDialog& dialog() { return dialog_; }

 private:
  using Action = void (SheetActions::*)();

  void nameControls();
  void fitSlider(RangeSlider& slider, ValueLabel& value, SliderRange span, int decimals, const QString& unit);
  void indent(std::initializer_list<QSpacerItem*> spacers) const;
  void showFault(const QString& fault);
  // SheetTelling.cpp: which control tells what.
  void connectControls();
  void connectFields();
  void connectChoices();
  void connectButtons();
  void tellWhenPressed(const QAbstractButton& button, Action action);
  void tell(Action action) const;

  SheetActions* actions_ = nullptr;
  bool filling_ = false;  // by program: tells nobody
  SheetDialog dialog_;
  const std::unique_ptr<Ui::ConfigureSheet> ui_;
  std::map<SheetControl, QWidget*> widgets_;
  DialogOverWindow overWindow_;
};

}  // namespace lumivane
