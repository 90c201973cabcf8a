#include "settings/sheet/RangeSlider.h"

#include <QScopedValueRollback>
#include <cmath>

namespace lumivane {
namespace {

constexpr int kPageSteps = 10;

}  // namespace

RangeSlider::RangeSlider(QWidget* parent) : QSlider(parent) {
  connect(this, &QSlider::valueChanged, this, &RangeSlider::moved);
}

void RangeSlider::setSpan(SliderRange span, int stepsInOne) {
  span_ = span;
  stepsInOne_ = stepsInOne;
  const QScopedValueRollback filling(filling_, true);
  setRange(0, qRound((span.maximum - span.minimum) * static_cast<float>(stepsInOne)));
  setPageStep(kPageSteps);
  showNumber(span.minimum);
}

void RangeSlider::showNumber(float number) {
  const QScopedValueRollback filling(filling_, true);
  number_ = std::isfinite(number) ? number : span_.minimum;
  const float within = qBound(span_.minimum, number_, span_.maximum);
  setValue(qRound((within - span_.minimum) * static_cast<float>(stepsInOne_)));
  emit numberShown(number_);
}

void RangeSlider::moved(int steps) {
  if (filling_) return;
  number_ = static_cast<float>(double{span_.minimum} + steps / static_cast<double>(stepsInOne_));
  emit numberShown(number_);
  emit numberChosen(number_);
}

}  // namespace lumivane
