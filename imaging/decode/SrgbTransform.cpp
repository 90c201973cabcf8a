#include "imaging/decode/SrgbTransform.h"

#include <lcms2.h>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

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

Transform compile(cmsHPROFILE from, cmsUInt32Number format) {
  const Profile srgb(cmsCreate_sRGBProfile());
  if (!srgb) return nullptr;
  return Transform(cmsCreateTransform(from, format, srgb.get(), TYPE_RGBA_8, INTENT_RELATIVE_COLORIMETRIC,
                                      cmsFLAGS_NOCACHE));
}

// Most profiles say sRGB in one of many spellings. What counts is whether anything would change.
bool changesNothing(cmsHPROFILE profile) {
  if (cmsGetColorSpace(profile) != cmsSigRgbData) return false;
  const Transform transform = compile(profile, TYPE_RGBA_8);
  if (!transform) return false;
  constexpr int kSteps = 9;
  constexpr int kTolerance = 2;
  std::vector<std::uint8_t> before;
  for (int i = 0; i < kSteps * kSteps * kSteps; ++i) {
    for (const int step : {i / (kSteps * kSteps), i / kSteps % kSteps, i % kSteps}) {
      before.push_back(static_cast<std::uint8_t>(step * 255 / (kSteps - 1)));
    }
    before.push_back(0);
  }
  std::vector<std::uint8_t> after = before;
  cmsDoTransform(transform.get(), before.data(), after.data(),
                 static_cast<cmsUInt32Number>(before.size() / 4));
  return std::equal(before.begin(), before.end(), after.begin(),
                    [](int a, int b) { return std::abs(a - b) <= kTolerance; });
}

}  // namespace

struct SrgbTransform::Compiled {
  Transform transform;
};

SrgbTransform::SrgbTransform(std::unique_ptr<Compiled> compiled) : compiled_(std::move(compiled)) {}
SrgbTransform::~SrgbTransform() = default;

std::unique_ptr<SrgbTransform> SrgbTransform::make(std::span<const std::byte> bytes, PixelLayout layout) {
  if (bytes.empty() || bytes.size() > std::size_t{16} << 20) return nullptr;
  const Profile profile(cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
  if (!profile || !isFor(profile.get(), layout.colourChannels) || changesNothing(profile.get()))
    return nullptr;
  Transform transform = compile(profile.get(), formatOf(layout));
  if (!transform) return nullptr;
  return std::unique_ptr<SrgbTransform>(
      new SrgbTransform(std::make_unique<Compiled>(Compiled{std::move(transform)})));
}

void SrgbTransform::apply(const void* in, std::uint8_t* out, std::size_t pixels) const {
  cmsDoTransform(compiled_->transform.get(), in, out, static_cast<cmsUInt32Number>(pixels));
}

}  // namespace lumivane
