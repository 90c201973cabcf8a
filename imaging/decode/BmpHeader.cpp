#include "imaging/decode/BmpHeader.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace lumivane {

namespace {

constexpr std::size_t kFileHeaderBytes = 14;
constexpr std::uint32_t kOs2HeaderBytes = 12;
constexpr std::uint32_t kWindowsHeaderBytes = 40;

// Little-endian numbers by position; what is not there reads as 0.
class Fields {
 public:
  explicit Fields(std::span<const std::byte> bytes) : bytes_(bytes) {}
  std::uint32_t u8(std::size_t at) const {
    return at < bytes_.size() ? std::to_integer<std::uint32_t>(bytes_[at]) : 0;
  }
  std::uint32_t u16(std::size_t at) const { return u8(at) | u8(at + 1) << 8; }
  std::uint32_t u32(std::size_t at) const { return u16(at) | u16(at + 2) << 16; }

 private:
  std::span<const std::byte> bytes_;
};

enum Compression : std::uint32_t {
  kPlain = 0,
  kRunLength8 = 1,
  kRunLength4 = 2,
  kBitFields = 3,
  kAlphaBitFields = 6
};

// Sides, which way up, bits: false when they cannot be.
bool readSides(const Fields& f, std::uint32_t headerBytes, BmpHeader& header) {
  const bool os2 = headerBytes == kOs2HeaderBytes;
  const auto width = os2 ? static_cast<std::int32_t>(f.u16(18)) : static_cast<std::int32_t>(f.u32(18));
  const auto height = os2 ? static_cast<std::int32_t>(f.u16(20)) : static_cast<std::int32_t>(f.u32(22));
  header.bitsPerPixel = static_cast<int>(os2 ? f.u16(24) : f.u16(28));
  if (width <= 0 || height == 0 || height == std::numeric_limits<std::int32_t>::min()) return false;
  header.topDown = height < 0;
  header.size = {width, height < 0 ? -height : height};
  constexpr std::array kBits = {1, 2, 4, 8, 16, 24, 32};
  return std::find(kBits.begin(), kBits.end(), header.bitsPerPixel) != kBits.end();
}

bool readPacking(std::uint32_t compression, BmpHeader& header) {
  switch (compression) {
    case kPlain:
      return true;
    case kRunLength8:
      header.packing = BmpHeader::Packing::RunLength8;
      return header.bitsPerPixel == 8 && !header.topDown;
    case kRunLength4:
      header.packing = BmpHeader::Packing::RunLength4;
      return header.bitsPerPixel == 4 && !header.topDown;
    case kBitFields:
    case kAlphaBitFields:
      return header.bitsPerPixel == 16 || header.bitsPerPixel == 32;
    default:
      return false;
  }
}

void readChannels(const Fields& f, std::uint32_t headerBytes, std::uint32_t compression, BmpHeader& header) {
  if (compression == kBitFields || compression == kAlphaBitFields) {
    const bool alpha = compression == kAlphaBitFields || headerBytes >= 56;
    const std::size_t at = kFileHeaderBytes + kWindowsHeaderBytes;
    header.channels = {{{f.u32(at)}, {f.u32(at + 4)}, {f.u32(at + 8)}, {alpha ? f.u32(at + 12) : 0}}};
  } else if (header.bitsPerPixel == 16) {
    header.channels = {{{0x7C00}, {0x03E0}, {0x001F}, {0}}};
  } else {
    header.channels = {{{0xFF0000}, {0x00FF00}, {0x0000FF}, {0}}};
  }
}

void readPalette(const Fields& f, std::uint32_t headerBytes, BmpHeader& header) {
  if (header.bitsPerPixel > 8) return;
  const std::size_t step = headerBytes == kOs2HeaderBytes ? 3 : 4;
  const std::size_t first = kFileHeaderBytes + headerBytes;
  const std::size_t most = std::size_t{1} << header.bitsPerPixel;
  std::size_t count = headerBytes == kOs2HeaderBytes ? most : f.u32(46);
  if (count == 0 || count > most) count = most;
  // The palette ends where the pixels begin, whatever the header says of its length.
  if (header.pixelsAt > first) count = std::min(count, (header.pixelsAt - first) / step);
  header.palette.resize(256, {0, 0, 0});
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = first + i * step;
    for (std::size_t c = 0; c < 3; ++c) header.palette[i][c] = static_cast<std::uint8_t>(f.u8(at + 2 - c));
  }
}

}  // namespace

std::uint8_t BmpChannel::valueIn(std::uint32_t pixel) const {
  if (mask == 0) return 0;
  const int shift = std::countr_zero(mask);
  const std::uint64_t most = mask >> shift;
  return static_cast<std::uint8_t>((std::uint64_t{(pixel & mask) >> shift} * 255 + most / 2) / most);
}

std::optional<BmpHeader> readBmpHeader(std::span<const std::byte> start) {
  const Fields f(start);
  const std::uint32_t headerBytes = f.u32(14);
  if (start.size() < 26 || headerBytes < kOs2HeaderBytes || headerBytes > 124) return std::nullopt;
  const bool os2 = headerBytes == kOs2HeaderBytes;
  if (!os2 && headerBytes < kWindowsHeaderBytes) return std::nullopt;
  BmpHeader header;
  header.pixelsAt = f.u32(10);
  const std::uint32_t compression = os2 ? std::uint32_t{kPlain} : f.u32(30);
  if (!readSides(f, headerBytes, header) || !readPacking(compression, header)) return std::nullopt;
  readChannels(f, headerBytes, compression, header);
  readPalette(f, headerBytes, header);
  return header;
}

}  // namespace lumivane
