// The change of one property of a layer from one value to another over time.
//
// Threads: a value.
// Units:   times in seconds of the layer's local time; opacity 0..1.
// Errors:  none.
#pragma once

#include <functional>
#include <optional>
#include <variant>

#include "platform/Clock.h"
#include "platform/Geometry.h"

namespace lumivane {

enum class KeyPath { Bounds, BoundsSize, Position, Opacity };
enum class TimingCurve { Linear, EaseInEaseOut };
// Forwards: after its end the animation's last value stays in force while the animation is attached.
enum class FillMode { Removed, Forwards };

// Which alternative is meant follows from the key path: RectPt for Bounds, SizePt for BoundsSize, PointPt for
// Position, double for Opacity.
using AnimatedValue = std::variant<double, PointPt, SizePt, RectPt>;

struct BasicAnimation {
  KeyPath keyPath = KeyPath::Opacity;
  AnimatedValue from = 0.0;
  AnimatedValue to = 0.0;
  Seconds duration{0};
  TimingCurve timing = TimingCurve::EaseInEaseOut;
  bool autoreverses = false;
  double repeatCount = 1;
  FillMode fillMode = FillMode::Removed;
  bool removedOnCompletion = true;
  std::optional<Seconds> beginTime;  // in the layer's local time; absent: the moment at which it is added

  // Called on the main thread once the animation has run its course (finished = true) or has been removed
  // before that (finished = false). Not part of snapshots.
  std::function<void(bool finished)> didStop;
};

// How long the animation runs: duration, twice that when it reverses, times the repeat count.
[[nodiscard]] Seconds activeDuration(const BasicAnimation& animation);

// The eased progress for a linear progress of 0..1. EaseInEaseOut is the cubic Bezier through
// (0.42, 0) and (0.58, 1).
[[nodiscard]] double eased(TimingCurve curve, double progress);

}  // namespace lumivane
