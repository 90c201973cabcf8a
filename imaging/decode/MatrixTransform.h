// Turns pixels of 8 bits with a profile of three curves and a matrix, which is what cameras, telephones and screens have,
// into sRGB: several times faster than the colour library, which is made for profiles of all kinds.
//
// Threads: any; constant after construction.
// Units:   8 bits a channel, red green blue first; RGBA out, alpha is not touched.
// Errors:  make() gives nothing for a profile of another kind.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace lumivane {

class MatrixTransform {
 public:
  // Requires: `profile` and `srgb` are open profiles of the colour library (cmsHPROFILE).
  [[nodiscard]] static std::unique_ptr<MatrixTransform> make(void* profile, void* srgb);

  // `step` is how far apart the pixels of `in` are: 3 or 4 bytes. In place where that is 4.
  void apply(const std::uint8_t* in, std::size_t step, std::uint8_t* out, std::size_t pixels) const;

 private:
  // What one channel's value adds to red, green and blue of the result, in steps of encoded_.
  struct alignas(16) Share {
    std::array<float, 4> of{};
  };
  using Channel = std::array<Share, 256>;

  MatrixTransform() = default;

  std::array<Channel, 3> channels_;
  std::vector<std::uint8_t> encoded_;  // light, in even steps, as sRGB has it
};

}  // namespace lumivane
