// Where the slideshow's chance comes from: one sequence per process, seeded once.
//
// Threads: main only.
// Units:   uniform whole numbers from 0 to kRandomMax, both included.
// Errors:  none.
#pragma once

#include <cstdint>
#include <random>

namespace lumivane {

inline constexpr std::uint32_t kRandomMax = 2147483647;

class RandomSource {
 public:
  virtual ~RandomSource() = default;
  [[nodiscard]] virtual std::uint32_t random() = 0;
  virtual void seed(std::uint64_t seed) = 0;
};

// The Mersenne twister's upper 31 bits: the same seed gives the same show on every machine.
class TwisterRandom final : public RandomSource {
 public:
  [[nodiscard]] std::uint32_t random() override { return static_cast<std::uint32_t>(engine_()) >> 1; }
  void seed(std::uint64_t seed) override {
    std::seed_seq sequence{static_cast<std::uint32_t>(seed), static_cast<std::uint32_t>(seed >> 32)};
    engine_.seed(sequence);
  }

 private:
  std::mt19937 engine_;
};

}  // namespace lumivane
