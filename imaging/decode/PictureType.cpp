#include "imaging/decode/PictureType.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lumivane {

namespace {

using namespace std::string_view_literals;

constexpr std::array kHeifBrands = {"heic"sv, "heix"sv, "hevc"sv, "hevx"sv, "heim"sv, "heis"sv, "hevm"sv,
                                    "hevs"sv, "mif1"sv, "mif2"sv, "msf1"sv, "avif"sv, "avis"sv, "miaf"sv};
constexpr std::array kRawStarts = {
    "FUJIFILMCCD-RAW"sv, "FOVb"sv, "\0MRM"sv, "IIU\0"sv, "IIRO"sv, "IIRS"sv, "MMOR"sv};
constexpr std::array kTiffStarts = {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv};
constexpr std::array kJp2Starts = {"\0\0\0\x0CjP  \r\n\x87\n"sv, "\xFF\x4F\xFF\x51"sv};
constexpr std::array kJxlStarts = {"\0\0\0\x0CJXL \r\n\x87\n"sv, "\xFF\x0A"sv};

template <std::size_t N>
bool startsWithAny(std::string_view text, const std::array<std::string_view, N>& starts) {
  return std::any_of(starts.begin(), starts.end(), [text](auto start) { return text.starts_with(start); });
}

// The box that opens an ISO media file names what the file can be read as: first one brand, then a list.
PictureType isoMediaType(std::string_view start) {
  const auto byte = [start](std::size_t i) {
    return static_cast<std::size_t>(static_cast<unsigned char>(start[i]));
  };
  const std::size_t boxBytes = byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3);
  const std::size_t end = std::min(boxBytes, start.size());
  for (std::size_t at = 8; at + 4 <= end; at = at == 8 ? 16 : at + 4) {  // a version number lies between
    const std::string_view brand = start.substr(at, 4);
    if (brand == "crx ") return PictureType::CameraRaw;
    if (std::find(kHeifBrands.begin(), kHeifBrands.end(), brand) != kHeifBrands.end())
      return PictureType::Heif;
  }
  return PictureType::Unknown;
}

// "BM" alone is too weak: the size of the header that follows must be one that exists.
bool isBmp(std::string_view start) {
  if (!start.starts_with("BM") || start.size() < 26) return false;
  const auto headerBytes = static_cast<unsigned char>(start[14]);
  constexpr std::array<unsigned char, 7> kHeaderBytes = {12, 40, 52, 56, 64, 108, 124};
  return start.substr(15, 3) == "\0\0\0"sv &&
         std::find(kHeaderBytes.begin(), kHeaderBytes.end(), headerBytes) != kHeaderBytes.end();
}

}  // namespace

PictureType pictureTypeOf(std::span<const std::byte> bytes) {
  const std::string_view start(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (start.starts_with("\xFF\xD8\xFF"sv)) return PictureType::Jpeg;
  if (start.starts_with("\x89PNG\r\n\x1A\n"sv)) return PictureType::Png;
  if (start.starts_with("GIF87a"sv) || start.starts_with("GIF89a"sv)) return PictureType::Gif;
  if (start.starts_with("RIFF"sv) && start.size() >= 12 && start.substr(8, 4) == "WEBP"sv)
    return PictureType::WebP;
  if (startsWithAny(start, kRawStarts)) return PictureType::CameraRaw;
  if (startsWithAny(start, kTiffStarts)) return PictureType::Tiff;
  if (startsWithAny(start, kJp2Starts)) return PictureType::Jp2;
  if (startsWithAny(start, kJxlStarts)) return PictureType::Jxl;
  if (start.size() >= 12 && start.substr(4, 4) == "ftyp"sv) return isoMediaType(start);
  if (isBmp(start)) return PictureType::Bmp;
  return PictureType::Unknown;
}

}  // namespace lumivane
