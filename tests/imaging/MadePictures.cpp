#include "tests/imaging/MadePictures.h"

#include <fstream>
#include <iterator>

namespace lumivane {

using vips::VImage;

VImage fourQuarters(int width, int height) {
  const auto even = [&](std::vector<double> colour) {
    return VImage::black(width / 2, height / 2, VImage::option()->set("bands", 3))
        .linear({0, 0, 0}, colour)
        .cast(VIPS_FORMAT_UCHAR);
  };
  VImage picture = even({255, 0, 0})
                       .join(even({0, 255, 0}), VIPS_DIRECTION_HORIZONTAL)
                       .join(even({0, 0, 255}).join(even({255, 255, 255}), VIPS_DIRECTION_HORIZONTAL),
                             VIPS_DIRECTION_VERTICAL);
  return picture.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB)).copy_memory();
}

VImage fourQuartersTurned(int width, int height, int orientation) {
  VImage picture = fourQuarters(width, height).copy();
  picture.set(VIPS_META_ORIENTATION, orientation);
  // Some of the library's writers make no Exif block of their own: one directory with one entry, the orientation.
  std::string exif("Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\0\0\0\0\0\0\0\0", 32);
  exif[24] = static_cast<char>(orientation);
  void* copy = g_memdup2(exif.data(), exif.size());
  picture.set(
      VIPS_META_EXIF_NAME, [](void* data, void*) -> int { return g_free(data), 0; }, copy, exif.size());
  return picture;
}

std::string fileContent(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeFile(const std::filesystem::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
}

}  // namespace lumivane
