// Smooth chance: gradient noise and sums of it, the stuff that hills, clouds and waves are made of here.
//
// Threads: pure functions.
// Units:   one wave of octave 0 is about 1 unit long; noise lies in about -1..1.
// Errors:  none. The same arguments give the same value on every machine.
#pragma once

#include <cstdint>

namespace lumivane::demo {

[[nodiscard]] float noise(float x, float y, std::uint32_t seed);

// Octaves of noise, each half as strong and twice as fine as the one before.
[[nodiscard]] float fractalNoise(float x, float y, int octaves, std::uint32_t seed);

// The same folded into sharp crests, 0..1: mountain ridges.
[[nodiscard]] float ridgedNoise(float x, float y, int octaves, std::uint32_t seed);

// Uniform in 0..1, one value for each pair of whole numbers.
[[nodiscard]] float scatter(int x, int y, std::uint32_t seed);

}  // namespace lumivane::demo
