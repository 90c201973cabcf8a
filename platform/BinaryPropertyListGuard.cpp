#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/PropertyListGuard.h"

namespace lumivane {
namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr std::size_t kTrailerBytes = 32;
constexpr std::uint64_t kLargestExpansion = std::uint64_t{64} << 20;

// A whole number of the file, most significant byte first. Requires: at + width inside the bytes, width 1..8.
std::uint64_t bigEndian(std::string_view bytes, std::size_t at, std::size_t width) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < width; ++i) value = (value << 8) | static_cast<std::uint8_t>(bytes[at + i]);
  return value;
}

bool isWidth(std::uint64_t width) {
  return width >= 1 && width <= 8;
}

struct Extent {
  std::uint64_t count = 0;  // of bytes or of entries
  std::size_t start = 0;    // where they begin
};

// What an object becomes when all its references are followed.
struct Shape {
  std::uint64_t weight = 0;  // roughly bytes; 0 = not known yet, or a failure
  std::size_t height = 0;    // containers below it, one inside the other
};

// Follows every reference once. Layout: magic, objects, offset table, trailer; an object begins with a byte of
// type (upper half) and length (lower half, 15 = an integer object follows that holds the length).
class BinaryScan {
 public:
  explicit BinaryScan(std::string_view bytes) : bytes_(bytes) {}

  Result<Done> run() {
    if (!readTrailer()) return Error{"its table of objects makes no sense"};
    shapes_.assign(objects_, Shape{});
    onPath_.assign(objects_, false);
    shapeOf(root_, 0);
    if (!problem_.empty()) return Error{problem_};
    return Done{};
  }

 private:
  bool readTrailer() {
    if (bytes_.size() < kMagic.size() + kTrailerBytes) return false;
    tableEnd_ = bytes_.size() - kTrailerBytes;
    offsetWidth_ = bigEndian(bytes_, tableEnd_ + 6, 1);
    referenceWidth_ = bigEndian(bytes_, tableEnd_ + 7, 1);
    objects_ = bigEndian(bytes_, tableEnd_ + 8, 8);
    root_ = bigEndian(bytes_, tableEnd_ + 16, 8);
    table_ = bigEndian(bytes_, tableEnd_ + 24, 8);
    return isWidth(offsetWidth_) && isWidth(referenceWidth_) && table_ >= kMagic.size() &&
           table_ <= tableEnd_ && objects_ <= (tableEnd_ - table_) / offsetWidth_ && root_ < objects_;
  }

  Shape fail(const char* problem) {
    if (problem_.empty()) problem_ = problem;
    return {};
  }

  Shape shapeOf(std::uint64_t object, std::size_t depth) {
    if (!problem_.empty()) return {};
    if (object >= objects_) return fail("a reference leads nowhere");
    if (onPath_[object]) return fail("it contains itself");
    if (depth > kDeepestPropertyListNesting) return fail("it is nested too deeply");
    if (shapes_[object].weight != 0) return shapes_[object];
    const std::uint64_t at = bigEndian(bytes_, table_ + object * offsetWidth_, offsetWidth_);
    if (at < kMagic.size() || at >= table_) return fail("an object lies outside the file");
    onPath_[object] = true;
    const Shape shape = shapeAt(at, depth);
    onPath_[object] = false;
    return shapes_[object] = shape;
  }

  Shape shapeAt(std::size_t at, std::size_t depth) {
    const auto type = static_cast<std::uint8_t>(bytes_[at]) >> 4;
    const bool list = type == 0xA || type == 0xC;
    const bool dictionary = type == 0xD;
    const bool bytesOrText = type == 0x4 || type == 0x5 || type == 0x6;
    if (!list && !dictionary && !bytesOrText) return {1, 0};
    const Extent extent = extentAt(at);
    if (!problem_.empty()) return {};
    if (type == 0x5 && holdsZero(extent, 1)) return fail("a text holds a zero");
    if (type == 0x6 && holdsZero(extent, 2)) return fail("a text holds a zero");
    if (bytesOrText) return {1 + 4 * extent.count, 0};  // a UTF-16 unit may become three bytes
    return shapeOfReferences(extent, dictionary ? 2 * extent.count : extent.count, depth);
  }

  // The library ends the program when a text does not end at its first zero. What is cut off holds one, too.
  [[nodiscard]] bool holdsZero(const Extent& text, std::size_t unitBytes) const {
    if (text.count > (table_ - text.start) / unitBytes) return true;
    for (std::uint64_t unit = 0; unit < text.count; ++unit) {
      if (bigEndian(bytes_, text.start + static_cast<std::size_t>(unit) * unitBytes, unitBytes) == 0)
        return true;
    }
    return false;
  }

  Extent extentAt(std::size_t at) {
    const std::uint64_t shortCount = static_cast<std::uint8_t>(bytes_[at]) & 0x0FU;
    if (shortCount != 0x0F) return checked({shortCount, at + 1});
    if (at + 1 >= table_) return fail("a length is cut short"), Extent{};
    const auto marker = static_cast<std::uint8_t>(bytes_[at + 1]);
    const std::size_t width = std::size_t{1} << (marker & 0x0FU);
    if ((marker >> 4) != 0x1 || width > 8 || at + 2 + width > table_) {
      return fail("a length is malformed"), Extent{};
    }
    return checked({bigEndian(bytes_, at + 2, width), at + 2 + width});
  }

  Extent checked(Extent extent) {
    if (extent.count > bytes_.size()) fail("a length goes beyond the file");
    return extent;
  }

  Shape shapeOfReferences(const Extent& extent, std::uint64_t references, std::size_t depth) {
    if (references > (table_ - extent.start) / referenceWidth_) return fail("a list goes beyond the file");
    Shape shape{1, 1};
    for (std::uint64_t i = 0; i < references && problem_.empty(); ++i) {
      const std::size_t at = extent.start + static_cast<std::size_t>(i) * referenceWidth_;
      const Shape part = shapeOf(bigEndian(bytes_, at, referenceWidth_), depth + 1);
      shape.weight += part.weight;
      shape.height = std::max(shape.height, part.height + 1);
      if (shape.weight > kLargestExpansion) return fail("it expands to too much");
      if (shape.height > kDeepestPropertyListNesting) return fail("it is nested too deeply");
    }
    return shape;
  }

  std::string_view bytes_;
  std::size_t tableEnd_ = 0;
  std::uint64_t offsetWidth_ = 0;
  std::uint64_t referenceWidth_ = 0;
  std::uint64_t objects_ = 0;
  std::uint64_t root_ = 0;
  std::uint64_t table_ = 0;
  std::vector<Shape> shapes_;
  std::vector<bool> onPath_;  // from the root to where the scan stands
  std::string problem_;
};

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) {
  return bytes.starts_with("bplist");
}

Result<Done> guardBinaryPropertyList(std::string_view bytes) {
  if (!bytes.starts_with(kMagic)) return Error{"its version is unknown"};
  return BinaryScan(bytes).run();
}

}  // namespace lumivane
