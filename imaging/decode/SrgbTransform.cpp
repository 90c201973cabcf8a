#include "imaging/decode/SrgbTransform.h"

#include <lcms2.h>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "imaging/decode/MatrixTransform.h"

namespace lumivane {

namespace {

struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

struct DeleteTransform {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using Transform = std::unique_ptr<void, DeleteTransform>;

bool isFor(cmsHPROFILE profile, int colourChannels) {
  switch (cmsGetColorSpace(profile)) {
    case cmsSigGrayData:
      return colourChannels == 1;
    case cmsSigRgbData:
      return colourChannels == 3;
    case cmsSigCmykData:
      return colourChannels == 4;
    default:
      return false;
  }
}

cmsUInt32Number formatOf(PixelLayout layout) {
  const cmsUInt32Number space = layout.colourChannels == 1   ? PT_GRAY
                                : layout.colourChannels == 4 ? PT_CMYK
                                                             : PT_RGB;
  // A CMYK picture in 8 bits comes as amounts of ink, 0 is none.
  return COLORSPACE_SH(space) | CHANNELS_SH(static_cast<cmsUInt32Number>(layout.colourChannels)) |
         EXTRA_SH(static_cast<cmsUInt32Number>(layout.extraChannels)) |
         BYTES_SH(static_cast<cmsUInt32Number>(layout.bytesPerChannel));
}

Transform compile(cmsHPROFILE from, cmsUInt32Number format, cmsHPROFILE srgb) {
  return Transform(
      cmsCreateTransform(from, format, srgb, TYPE_RGBA_8, INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOCACHE));
}

// Colours from all over, red green blue and a byte that does not count.
std::vector<std::uint8_t> sampleColours() {
  constexpr int kSteps = 17;
  std::vector<std::uint8_t> colours;
  const auto add = [&colours](int red, int green, int blue) {
    for (const int value : {red, green, blue, 0}) colours.push_back(static_cast<std::uint8_t>(value));
  };
  for (int i = 0; i < kSteps * kSteps * kSteps; ++i) {
    const auto value = [](int step) { return step * 255 / (kSteps - 1); };
    add(value(i / (kSteps * kSteps)), value(i / kSteps % kSteps), value(i % kSteps));
  }
  for (int grey = 0; grey < 256; ++grey) add(grey, grey, grey);
  return colours;
}

// By the library; as they were for a profile that it does not convert.
std::vector<std::uint8_t> converted(std::vector<std::uint8_t> colours, cmsHPROFILE profile,
                                    cmsHPROFILE srgb) {
  const Transform transform = compile(profile, TYPE_RGBA_8, srgb);
  const auto count = static_cast<cmsUInt32Number>(colours.size() / 4);
  if (transform) cmsDoTransform(transform.get(), colours.data(), colours.data(), count);
  return colours;
}

std::vector<std::uint8_t> converted(std::vector<std::uint8_t> colours, const MatrixTransform& matrix) {
  matrix.apply(colours.data(), 4, colours.data(), colours.size() / 4);
  return colours;
}

bool isClose(const std::vector<std::uint8_t>& one, const std::vector<std::uint8_t>& other, int tolerance) {
  return std::equal(one.begin(), one.end(), other.begin(),
                    [tolerance](int a, int b) { return std::abs(a - b) <= tolerance; });
}

}  // namespace

// One of the two.
struct SrgbTransform::Compiled {
  Transform transform;
  std::unique_ptr<MatrixTransform> matrix;
  std::size_t step = 0;  // bytes from pixel to pixel
};

SrgbTransform::SrgbTransform(std::unique_ptr<Compiled> compiled) : compiled_(std::move(compiled)) {}
SrgbTransform::~SrgbTransform() = default;

std::unique_ptr<SrgbTransform> SrgbTransform::make(std::span<const std::byte> bytes, PixelLayout layout) {
  if (bytes.empty() || bytes.size() > std::size_t{16} << 20) return nullptr;
  const Profile profile(cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
  const Profile srgb(cmsCreate_sRGBProfile());
  if (!profile || !srgb || !isFor(profile.get(), layout.colourChannels)) return nullptr;
  auto compiled = std::make_unique<Compiled>();
  compiled->step = static_cast<std::size_t>(layout.colourChannels + layout.extraChannels);
  if (layout.colourChannels == 3) {
    const std::vector<std::uint8_t> before = sampleColours();
    const std::vector<std::uint8_t> after = converted(before, profile.get(), srgb.get());
    // Most profiles say sRGB in one of many spellings. What counts is whether anything would change.
    constexpr int kNoticeable = 2;
    if (isClose(before, after, kNoticeable)) return nullptr;
    if (layout.bytesPerChannel == 1) compiled->matrix = MatrixTransform::make(profile.get(), srgb.get());
    // A profile that is not what it looks like is left to the library.
    if (compiled->matrix && !isClose(converted(before, *compiled->matrix), after, 1))
      compiled->matrix.reset();
  }
  if (!compiled->matrix) {
    compiled->transform = compile(profile.get(), formatOf(layout), srgb.get());
    if (!compiled->transform) return nullptr;
  }
  return std::unique_ptr<SrgbTransform>(new SrgbTransform(std::move(compiled)));
}

void SrgbTransform::apply(const void* in, std::uint8_t* out, std::size_t pixels) const {
  if (compiled_->matrix) {
    compiled_->matrix->apply(static_cast<const std::uint8_t*>(in), compiled_->step, out, pixels);
    return;
  }
  cmsDoTransform(compiled_->transform.get(), in, out, static_cast<cmsUInt32Number>(pixels));
}

}  // namespace lumivane
