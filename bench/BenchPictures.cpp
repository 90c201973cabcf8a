#include "BenchPictures.h"

#include <lcms2.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <memory>
#include <utility>
#include <vector>
#include <vips/vips8>

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using vips::VImage;

// How strong the finest detail is. With the quality below a JPEG of 24 megapixels takes about 7 MB, as cameras make them.
constexpr double kFineDetail = 7;
constexpr int kQuality = 86;
// Detail of twice the size is so much stronger: photographs have most of their contrast in large shapes.
constexpr double kGrowth = 1.4;

std::string named(SizePx size, const std::string& ending) {
  const std::string name =
      "lumivane-bench-" + std::to_string(size.width) + "x" + std::to_string(size.height) + ending;
  return (fs::temp_directory_path() / name).string();
}

// Has `write` make the file unless it is there; a broken-off run leaves no half of it.
template <typename Write>
std::string keptFile(SizePx size, const std::string& kind, const std::string& extension, Write write) {
  const std::string path = named(size, kind + extension);
  if (fs::exists(path)) return path;
  const std::string part = named(size, kind + "-part" + extension);
  write(part);
  fs::rename(part, path);
  return path;
}

// Noise whose grains are 2^doublings pixels wide.
VImage grains(SizePx size, int doublings, int seed) {
  const int scale = 1 << doublings;
  const double sigma = kFineDetail * std::pow(kGrowth, doublings);
  const VImage noise = VImage::gaussnoise(
      size.width / scale + 4, size.height / scale + 4,
      VImage::option()->set("sigma", sigma)->set("mean", 0)->set("seed", seed + doublings));
  return noise.resize(scale, VImage::option()->set("kernel", VIPS_KERNEL_LINEAR))
      .extract_area(scale, scale, size.width, size.height);
}

VImage channel(SizePx size, std::initializer_list<int> doublings, int seed) {
  VImage sum = VImage::black(size.width, size.height);
  for (const int some : doublings) sum = sum + grains(size, some, seed);
  return sum;
}

// Light has the finest detail, colours change slowly.
VImage madePicture(SizePx size) {
  const VImage light = channel(size, {0, 1, 3, 5, 8}, 100) + 128;
  const VImage red = light + channel(size, {3, 5, 8}, 200) * 0.5;
  const VImage blue = light + channel(size, {3, 5, 8}, 300) * 0.5;
  return VImage::bandjoin({red, light, blue})
      .cast(VIPS_FORMAT_UCHAR)
      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

// Pictures take a while to make: other formats are made from the first one. The largest are needed as JPEG only.
VImage keptPicture(SizePx size) {
  if (size.width > k24Megapixels.width) return madePicture(size);
  const std::string path = pngPicture(size);
  return VImage::new_from_file(path.c_str());
}

std::vector<char> displayP3Profile() {
  const cmsCIExyY white = {0.3127, 0.3290, 1};
  const cmsCIExyYTRIPLE primaries = {{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
  const std::array<cmsFloat64Number, 5> srgbCurve = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
  const std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)> curve(
      cmsBuildParametricToneCurve(nullptr, 4, srgbCurve.data()), &cmsFreeToneCurve);
  const std::array<cmsToneCurve*, 3> curves = {curve.get(), curve.get(), curve.get()};
  const cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves.data());
  cmsUInt32Number bytes = 0;
  cmsSaveProfileToMem(profile, nullptr, &bytes);
  std::vector<char> data(bytes);
  cmsSaveProfileToMem(profile, data.data(), &bytes);
  cmsCloseProfile(profile);
  return data;
}

VImage withDisplayP3(const VImage& image) {
  static const std::vector<char> profile = displayP3Profile();
  VImage copy = image.copy();
  // The library frees nothing of ours; it has its own copy when the call is over.
  vips_image_set_blob_copy(copy.get_image(), VIPS_META_ICC_NAME, profile.data(), profile.size());
  return copy;
}

VImage withQuarterTurn(const VImage& image) {
  constexpr int kQuarterTurn = 6;
  VImage copy = image.copy();
  copy.set(VIPS_META_ORIENTATION, kQuarterTurn);
  return copy;
}

}  // namespace

std::string jpegPicture(SizePx size, JpegKind kind) {
  const auto save = [size](const std::string& name, bool progressive, auto prepare) {
    return keptFile(size, name, ".jpg", [&](const std::string& path) {
      prepare(keptPicture(size))
          .jpegsave(path.c_str(), VImage::option()
                                      ->set("Q", kQuality)
                                      ->set("subsample_mode", VIPS_FOREIGN_SUBSAMPLE_ON)
                                      ->set("optimize_coding", true)
                                      ->set("interlace", progressive));
    });
  };
  const auto asItIs = [](const VImage& image) { return image; };
  switch (kind) {
    case JpegKind::QuarterTurn:
      return save("-turned", false, &withQuarterTurn);
    case JpegKind::Progressive:
      return save("-progressive", true, asItIs);
    case JpegKind::DisplayP3:
      return save("-display-p3", false, &withDisplayP3);
    case JpegKind::Plain:
      break;
  }
  return save("", false, asItIs);
}

std::string pngPicture(SizePx size) {
  return keptFile(size, "", ".png",
                  [&](const std::string& path) { madePicture(size).pngsave(path.c_str()); });
}

std::string tiffPicture(SizePx size) {
  return keptFile(size, "", ".tif", [&](const std::string& path) {
    keptPicture(size).tiffsave(path.c_str(), VImage::option()
                                                 ->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_LZW)
                                                 ->set("predictor", VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL));
  });
}

std::string webpPicture(SizePx size) {
  return keptFile(size, "", ".webp", [&](const std::string& path) {
    keptPicture(size).webpsave(path.c_str(), VImage::option()->set("Q", kQuality)->set("effort", 2));
  });
}

std::string heicPicture(SizePx size) {
  return keptFile(size, "", ".heic", [&](const std::string& path) {
    keptPicture(size).heifsave(path.c_str(), VImage::option()
                                                 ->set("Q", 50)
                                                 ->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_HEVC)
                                                 ->set("effort", 1));
  });
}

std::string avifPicture(SizePx size) {
  return keptFile(size, "", ".avif", [&](const std::string& path) {
    keptPicture(size).heifsave(path.c_str(), VImage::option()
                                                 ->set("Q", 60)
                                                 ->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1)
                                                 ->set("effort", 1));
  });
}

}  // namespace lumivane
