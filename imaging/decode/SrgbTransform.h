// Turns rows of pixels with an embedded colour profile into sRGB.
//
// Threads: one at a time; transforms share nothing.
// Owns:    the compiled transform.
// Units:   8 or 16 bits a channel in, RGBA of 8 bits out; alpha is not touched, and straight.
// Errors:  make() gives nothing for a profile that cannot be used, is for other channels, or is sRGB itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace lumivane {

// How a pixel lies in memory: colour channels first, then what is not colour.
struct PixelLayout {
  int colourChannels = 3;  // 1 grey, 3 RGB, 4 CMYK
  int extraChannels = 0;
  int bytesPerChannel = 1;
};

class SrgbTransform {
 public:
  [[nodiscard]] static std::unique_ptr<SrgbTransform> make(std::span<const std::byte> profile,
                                                           PixelLayout layout);
  ~SrgbTransform();

  // Writes red, green and blue; leaves every fourth byte of `out` alone. In place where the layouts are equally wide.
  void apply(const void* in, std::uint8_t* out, std::size_t pixels) const;

 private:
  struct Compiled;
  explicit SrgbTransform(std::unique_ptr<Compiled> compiled);
  std::unique_ptr<Compiled> compiled_;
};

}  // namespace lumivane
