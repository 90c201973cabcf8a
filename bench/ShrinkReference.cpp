#include "ShrinkReference.h"

#include "PeerLoaders.h"

#include <vips/vips8>

namespace lumivane {

using vips::VImage;

double meanError(const std::string& path, const std::uint8_t* pixels, SizePx size, int channels) {
  const VImage full =
      VImage::new_from_file(path.c_str(), VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL));
  const VImage reference = full.resize(static_cast<double>(size.width) / full.width(),
                                       VImage::option()
                                           ->set("vscale", static_cast<double>(size.height) / full.height())
                                           ->set("kernel", VIPS_KERNEL_LANCZOS3));
  if (reference.width() != size.width || reference.height() != size.height) throw vips::VError("other sizes");
  const auto bytes = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) *
                     static_cast<std::size_t>(channels);
  const VImage ours = VImage::new_from_memory(const_cast<std::uint8_t*>(pixels), bytes, size.width,
                                              size.height, channels, VIPS_FORMAT_UCHAR)
                          .extract_band(0, VImage::option()->set("n", 3));
  return (ours - reference).abs().avg();
}

std::optional<SizePx> loadWithVips(const std::string& path, int longestSide) {
  try {
    const VImage image = VImage::thumbnail(path.c_str(), longestSide,
                                           VImage::option()
                                               ->set("height", longestSide)
                                               ->set("size", VIPS_SIZE_DOWN)
                                               ->set("export_profile", "srgb"));
    std::size_t bytes = 0;
    g_free(image.write_to_memory(&bytes));
    return SizePx{image.width(), image.height()};
  } catch (const vips::VError&) {
    return std::nullopt;
  }
}

}  // namespace lumivane
