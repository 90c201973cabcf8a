#include "compositor/model/AnimationTiming.h"

#include <cmath>

namespace lumivane {
namespace {

double mix(double from, double to, double progress) {
  return progress == 1 ? to : from + (to - from) * progress;
}
PointPt mix(PointPt from, PointPt to, double progress) {
  return {mix(from.x, to.x, progress), mix(from.y, to.y, progress)};
}
SizePt mix(SizePt from, SizePt to, double progress) {
  return {mix(from.width, to.width, progress), mix(from.height, to.height, progress)};
}
RectPt mix(const RectPt& from, const RectPt& to, double progress) {
  return {mix(from.origin, to.origin, progress), mix(from.size, to.size, progress)};
}

// Linear progress after an elapsed time within the active duration. At the very end of a whole cycle the cycle
// counts as complete rather than as begun anew.
double linearProgress(const BasicAnimation& animation, double elapsed) {
  const double passes = animation.autoreverses ? 2 : 1;
  const double cycles = elapsed / (animation.duration.count() * passes);
  double cycle = cycles - std::floor(cycles);
  if (cycle == 0 && cycles > 0 && elapsed >= activeDuration(animation).count()) cycle = 1;
  const double position = cycle * passes;
  return position > 1 ? 2 - position : position;
}

}  // namespace

Seconds localTime(const LayerProperties& layer, Seconds superlayerTime) {
  return (superlayerTime - layer.beginTime) * layer.speed + layer.timeOffset;
}

Seconds endTime(const BasicAnimation& animation) {
  return animation.beginTime.value_or(Seconds{0}) + activeDuration(animation);
}

std::optional<double> progressAt(const BasicAnimation& animation, Seconds localTime) {
  const double active = activeDuration(animation).count();
  const double elapsed = (localTime - animation.beginTime.value_or(Seconds{0})).count();
  if (elapsed < 0) return std::nullopt;
  const bool ended = elapsed >= active;
  if (ended && animation.fillMode != FillMode::Forwards) return std::nullopt;
  if (!(active > 0)) return animation.autoreverses ? 0.0 : 1.0;
  return eased(animation.timing, linearProgress(animation, ended ? active : elapsed));
}

bool changesAfter(const BasicAnimation& animation, Seconds localTime) {
  return animation.from != animation.to && localTime < endTime(animation);
}

bool fitsKeyPath(const AnimatedValue& value, KeyPath keyPath) {
  switch (keyPath) {
    case KeyPath::Bounds:
      return std::holds_alternative<RectPt>(value);
    case KeyPath::BoundsSize:
      return std::holds_alternative<SizePt>(value);
    case KeyPath::Position:
      return std::holds_alternative<PointPt>(value);
    case KeyPath::Opacity:
      return std::holds_alternative<double>(value);
  }
  return false;
}

AnimatedValue valueAt(const BasicAnimation& animation, double progress) {
  return std::visit(
      [&](const auto& from) -> AnimatedValue {
        using Value = std::decay_t<decltype(from)>;
        return mix(from, std::get<Value>(animation.to), progress);
      },
      animation.from);
}

}  // namespace lumivane
