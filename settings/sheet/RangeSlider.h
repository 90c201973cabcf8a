// A slider over a range of decimal numbers.
//
// Threads: main only.
// Errors:  none; a number outside of the range is kept, and shown at the end that it lies beyond.
#pragma once

#include <QSlider>

#include "settings/ConfigureSheet.h"

namespace lumivane {

class RangeSlider final : public QSlider {
  Q_OBJECT
 public:
  explicit RangeSlider(QWidget* parent = nullptr);

  // Requires: minimum < maximum, both whole numbers of steps away from each other.
  void setSpan(SliderRange span, int stepsInOne);
  [[nodiscard]] SliderRange span() const { return span_; }

  // By program: tells numberShown() alone. What is not a number is the range's minimum.
  void showNumber(float number);
  [[nodiscard]] float number() const { return number_; }

 signals:
  void numberShown(float number);   // whoever moved the slider
  void numberChosen(float number);  // the user moved it

 private:
  void moved(int steps);

  SliderRange span_;
  int stepsInOne_ = 1;
  float number_ = 0;
  bool filling_ = false;
};

}  // namespace lumivane
