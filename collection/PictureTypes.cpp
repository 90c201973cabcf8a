#include "collection/PictureTypes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace lumivane {
namespace {

// An extension as one number, so that a million names a walk are told apart without touching memory.
using PackedExtension = std::uint64_t;

constexpr std::size_t kLongestExtension = 5;

constexpr PackedExtension packed(std::string_view extension) {
  PackedExtension result = 1;  // so that leading zero bytes count
  for (const char c : extension) {
    const bool upper = c >= 'A' && c <= 'Z';
    result = (result << 8) | static_cast<std::uint8_t>(upper ? c - 'A' + 'a' : c);
  }
  return result;
}

template <std::size_t N>
constexpr std::array<PackedExtension, N> sortedPacked(const std::string_view (&extensions)[N]) {
  std::array<PackedExtension, N> result{};
  std::transform(extensions, extensions + N, result.begin(), packed);
  std::sort(result.begin(), result.end());
  return result;
}

constexpr auto kPictureExtensions = sortedPacked({
    // The formats that pictures are passed on in.
    "jpg",
    "jpeg",
    "jpe",
    "jfif",
    "png",
    "gif",
    "tif",
    "tiff",
    "webp",
    "bmp",
    "dib",
    "heic",
    "heics",
    "heif",
    "hif",
    "avif",
    "jxl",
    "jp2",
    "j2k",
    "jpx",
    "jpf",
    "j2c",
    "jpc",
    // The raw formats of cameras that libraw reads. The ones it shares with other kinds of files (disk images,
    // films, archives) are left out; "raw" itself stays, since two makers use no other name.
    "3fr",
    "arw",
    "cr2",
    "cr3",
    "crw",
    "dcr",
    "dng",
    "erf",
    "fff",
    "gpr",
    "iiq",
    "k25",
    "kdc",
    "mef",
    "mos",
    "mrw",
    "nef",
    "nrw",
    "orf",
    "pef",
    "ptx",
    "raf",
    "raw",
    "rw2",
    "rwl",
    "sr2",
    "srf",
    "srw",
    "x3f",
});

}  // namespace

bool isPictureFileName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return false;
  const std::string_view extension = name.substr(dot + 1);
  if (extension.empty() || extension.size() > kLongestExtension) return false;
  return std::binary_search(kPictureExtensions.begin(), kPictureExtensions.end(), packed(extension));
}

}  // namespace lumivane
