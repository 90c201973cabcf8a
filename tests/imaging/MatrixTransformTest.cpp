#include "imaging/decode/MatrixTransform.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace lumivane {
namespace {

struct Close {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, Close>;
using Bytes = std::vector<std::uint8_t>;

Profile profileOf(const cmsCIExyYTRIPLE& primaries, double gamma, cmsCIExyY white = {0.3127, 0.3290, 1}) {
  const std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)> curve(cmsBuildGamma(nullptr, gamma),
                                                                         &cmsFreeToneCurve);
  cmsToneCurve* curves[3] = {curve.get(), curve.get(), curve.get()};
  return Profile(cmsCreateRGBProfile(&white, &primaries, curves));
}

const cmsCIExyYTRIPLE kDisplayP3 = {{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
const cmsCIExyYTRIPLE kAdobe = {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}};
const cmsCIExyYTRIPLE kWidest = {{0.7347, 0.2653, 1}, {0.1596, 0.8404, 1}, {0.0366, 0.0001, 1}};

Bytes randomColours(std::size_t step) {
  std::mt19937 random(1);
  Bytes colours(step * 100'000);
  for (std::uint8_t& value : colours) value = static_cast<std::uint8_t>(random());
  for (std::size_t grey = 0; grey < 256; ++grey)
    std::fill_n(colours.begin() + static_cast<std::ptrdiff_t>(grey * step), step,
                static_cast<std::uint8_t>(grey));
  return colours;
}

Bytes byLibrary(cmsHPROFILE profile, cmsHPROFILE srgb, const Bytes& in, std::size_t step) {
  const cmsHTRANSFORM transform =
      cmsCreateTransform(profile, step == 3 ? TYPE_RGB_8 : TYPE_RGBA_8, srgb, TYPE_RGBA_8,
                         INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOCACHE | cmsFLAGS_NOOPTIMIZE);
  Bytes out(in.size() / step * 4, 99);
  cmsDoTransform(transform, in.data(), out.data(), static_cast<cmsUInt32Number>(in.size() / step));
  cmsDeleteTransform(transform);
  return out;
}

void expectLikeTheLibrary(const Profile& profile, std::size_t step) {
  const Profile srgb(cmsCreate_sRGBProfile());
  const auto transform = MatrixTransform::make(profile.get(), srgb.get());
  ASSERT_TRUE(transform);
  const Bytes in = randomColours(step);
  const Bytes expected = byLibrary(profile.get(), srgb.get(), in, step);
  Bytes out(expected.size(), 99);
  transform->apply(in.data(), step, out.data(), in.size() / step);
  for (std::size_t i = 0; i < out.size(); ++i) ASSERT_LE(std::abs(out[i] - expected[i]), 1) << i;
}

TEST(MatrixTransform, gives_what_the_colour_library_gives) {
  expectLikeTheLibrary(profileOf(kDisplayP3, 2.2), 3);
  expectLikeTheLibrary(profileOf(kDisplayP3, 2.2), 4);
  expectLikeTheLibrary(profileOf(kAdobe, 2.19921875), 3);
  expectLikeTheLibrary(profileOf(kWidest, 1.8, {0.3457, 0.3585, 1}), 4);
}

TEST(MatrixTransform, works_in_place_and_leaves_alpha_alone) {
  const Profile srgb(cmsCreate_sRGBProfile());
  const auto transform = MatrixTransform::make(profileOf(kAdobe, 2.2).get(), srgb.get());
  ASSERT_TRUE(transform);
  Bytes apart = {0, 0, 0, 1, 255, 255, 255, 2, 10, 200, 30, 3};
  Bytes in = apart;
  Bytes out(12, 77);
  transform->apply(in.data(), 4, out.data(), 3);
  transform->apply(apart.data(), 4, apart.data(), 3);
  for (const std::size_t i : {0, 1, 2, 4, 5, 6, 8, 9, 10}) EXPECT_EQ(apart[i], out[i]);
  EXPECT_EQ(out[3], 77);
  EXPECT_EQ(apart[11], 3);
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(out[4], 255);
}

TEST(MatrixTransform, leaves_other_profiles_to_the_library) {
  const Profile srgb(cmsCreate_sRGBProfile());
  EXPECT_FALSE(MatrixTransform::make(Profile(cmsCreateLab4Profile(nullptr)).get(), srgb.get()));
  EXPECT_FALSE(MatrixTransform::make(Profile(cmsCreateXYZProfile()).get(), srgb.get()));
  const std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)> curve(cmsBuildGamma(nullptr, 2.2),
                                                                         &cmsFreeToneCurve);
  const cmsCIExyY white = {0.3127, 0.3290, 1};
  EXPECT_FALSE(MatrixTransform::make(Profile(cmsCreateGrayProfile(&white, curve.get())).get(), srgb.get()));
}

}  // namespace
}  // namespace lumivane
