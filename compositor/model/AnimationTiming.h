// When an animation runs, how far it is, and the value that it gives.
//
// Threads: any; pure functions.
// Units:   seconds of the layer's local time unless a name says otherwise.
// Errors:  none; an animation of no length ends where it begins.
#pragma once

#include <optional>

#include "compositor/model/BasicAnimation.h"
#include "compositor/model/Layer.h"

namespace lumivane {

// An animation that lacks so little to its end counts as ended for those who wait for the end: waits are whole
// nanoseconds, and media time is a double.
inline constexpr Seconds kEndTolerance{1e-6};

// The layer's local time at a time of its superlayer (of the media clock, for a root).
[[nodiscard]] Seconds localTime(const LayerProperties& layer, Seconds superlayerTime);

[[nodiscard]] Seconds endTime(const BasicAnimation& animation);

// Eased progress 0..1 from `from` to `to`; absent when the animation is not in force: before its begin, and after
// its end unless it fills forwards.
[[nodiscard]] std::optional<double> progressAt(const BasicAnimation& animation, Seconds localTime);

// Whether the animation's value changes at or after this local time.
[[nodiscard]] bool changesAfter(const BasicAnimation& animation, Seconds localTime);

// Whether the value is of the kind that the key path asks for.
[[nodiscard]] bool fitsKeyPath(const AnimatedValue& value, KeyPath keyPath);

// The value at an eased progress. Requires: `from` and `to` hold the same alternative.
[[nodiscard]] AnimatedValue valueAt(const BasicAnimation& animation, double progress);

}  // namespace lumivane
