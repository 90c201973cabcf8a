#include "tests/support/GoldenImage.h"

#include <cstdlib>
#include <vips/vips8>

namespace lumivane {
namespace {

// Reads from `drawn` as long as it lives.
vips::VImage asImage(const ReadBack& drawn) {
  return vips::VImage::new_from_memory(const_cast<std::uint8_t*>(drawn.bytes.data()), drawn.bytes.size(),
                                       drawn.size.width, drawn.size.height, 4, VIPS_FORMAT_UCHAR)
      .copy(vips::VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
      .extract_band(0, vips::VImage::option()->set("n", 3));
}

testing::AssertionResult compare(const vips::VImage& drawn, const vips::VImage& golden,
                                 const std::string& name) {
  if (drawn.width() != golden.width() || drawn.height() != golden.height()) {
    return testing::AssertionFailure() << name << ": the golden picture has another size";
  }
  const vips::VImage difference = (drawn.cast(VIPS_FORMAT_SHORT) - golden.cast(VIPS_FORMAT_SHORT)).abs();
  const double most = difference.max();
  const double mean = difference.avg();
  if (most <= kGoldenMostOf255 && mean <= kGoldenMeanOf255) return testing::AssertionSuccess();
  drawn.write_to_file((name + ".out.png").c_str());
  (difference * 8).cast(VIPS_FORMAT_UCHAR).write_to_file((name + ".diff.png").c_str());
  return testing::AssertionFailure() << name << ": differs by at most " << most << ", on average " << mean
                                     << " of 255; see " << name << ".out.png and " << name << ".diff.png";
}

}  // namespace

testing::AssertionResult matchesGolden(const ReadBack& drawn, const std::string& folder,
                                       const std::string& name) {
  static const int started = VIPS_INIT("lumivane-tests");
  if (started != 0) return testing::AssertionFailure() << "libvips does not start";
  const std::string path = folder + "/" + name + ".png";
  try {
    const vips::VImage image = asImage(drawn);
    const char* update = std::getenv("LUMIVANE_UPDATE_GOLDEN");
    if (update != nullptr && std::string(update) == "1") {
      image.write_to_file(path.c_str(), vips::VImage::option()->set("strip", true));
      return testing::AssertionSuccess();
    }
    return compare(image, vips::VImage::new_from_file(path.c_str()), name);
  } catch (const vips::VError& error) {
    return testing::AssertionFailure() << name << ": " << error.what();
  }
}

}  // namespace lumivane
