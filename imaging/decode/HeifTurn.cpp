#include "imaging/decode/HeifTurn.h"

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lumivane {

namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t kLargestMetaBox = std::size_t{16} << 20;
constexpr int kMostBoxes = 4096;

// Big-endian numbers from the front of a span. After the end everything reads as 0, and `ok` tells.
class Reader {
 public:
  explicit Reader(Bytes bytes) : bytes_(bytes) {}

  std::uint64_t number(std::size_t count) {
    std::uint64_t value = 0;
    for (const std::byte byte : take(count)) value = value << 8 | std::to_integer<std::uint64_t>(byte);
    return value;
  }

  Bytes take(std::size_t count) {
    if (count > bytes_.size()) {
      ok_ = false;
      bytes_ = {};
      return {};
    }
    const Bytes taken = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    return taken;
  }

  bool ok() const { return ok_; }
  std::size_t left() const { return bytes_.size(); }

 private:
  Bytes bytes_;
  bool ok_ = true;
};

struct Box {
  std::string_view type;
  Bytes content;
};

// The boxes that follow each other in `bytes`; what does not fit ends the list.
std::vector<Box> boxesIn(Bytes bytes) {
  std::vector<Box> boxes;
  Reader reader(bytes);
  while (reader.left() >= 8 && boxes.size() < kMostBoxes) {
    const std::uint64_t size = reader.number(4);
    const Bytes type = reader.take(4);
    std::uint64_t header = 8;
    std::uint64_t whole = size;
    if (size == 1) {
      whole = reader.number(8);
      header = 16;
    } else if (size == 0) {
      whole = header + reader.left();
    }
    if (!reader.ok() || whole < header || whole - header > reader.left()) break;
    boxes.push_back({{reinterpret_cast<const char*>(type.data()), 4},
                     reader.take(static_cast<std::size_t>(whole - header))});
  }
  return boxes;
}

std::optional<Bytes> contentOf(const std::vector<Box>& boxes, std::string_view type) {
  for (const Box& box : boxes) {
    if (box.type == type) return box.content;
  }
  return std::nullopt;
}

// Where the x and the y axis of the stored picture point to when it is seen; y points down.
struct Turn {
  int xx = 1, xy = 0;  // x axis
  int yx = 0, yy = 1;  // y axis
  bool operator==(const Turn&) const = default;
};

constexpr std::array<Turn, 8> kTurnOfCode = {{{1, 0, 0, 1},
                                              {-1, 0, 0, 1},
                                              {-1, 0, 0, -1},
                                              {1, 0, 0, -1},
                                              {0, 1, 1, 0},
                                              {0, 1, -1, 0},
                                              {0, -1, -1, 0},
                                              {0, -1, 1, 0}}};

Turn quarterTurnAnticlockwise(Turn t) {
  return {t.xy, -t.xx, t.yy, -t.yx};
}
Turn mirroredLeftRight(Turn t) {
  return {-t.xx, t.xy, -t.yx, t.yy};
}
Turn mirroredTopBottom(Turn t) {
  return {t.xx, -t.xy, t.yx, -t.yy};
}

Turn applied(Turn turn, const Box& property) {
  if (property.content.empty()) return turn;
  const auto value = std::to_integer<unsigned>(property.content[0]);
  if (property.type == "irot") {
    for (unsigned i = 0; i < (value & 3); ++i) turn = quarterTurnAnticlockwise(turn);
  } else if (property.type == "imir") {
    turn = (value & 1) != 0 ? mirroredLeftRight(turn) : mirroredTopBottom(turn);
  }
  return turn;
}

// 'ipma': which properties, counted from 1, belong to an item, in the order in which they are applied.
std::vector<std::size_t> propertiesOfItem(Bytes associations, std::uint64_t item) {
  Reader reader(associations);
  const std::uint64_t version = reader.number(1);
  const bool wideIndex = (reader.number(3) & 1) != 0;
  const std::uint64_t entries = reader.number(4);
  for (std::uint64_t i = 0; i < entries && reader.ok(); ++i) {
    const std::uint64_t id = reader.number(version < 1 ? 2 : 4);
    const std::uint64_t count = reader.number(1);
    std::vector<std::size_t> indices;
    for (std::uint64_t k = 0; k < count && reader.ok(); ++k) {
      indices.push_back(
          static_cast<std::size_t>(wideIndex ? reader.number(2) & 0x7FFF : reader.number(1) & 0x7F));
    }
    if (id == item) return indices;
  }
  return {};
}

// The 'meta' box without its version and flags.
std::vector<std::byte> metaBoxOf(const PictureFile& file) {
  std::uint64_t offset = 0;
  for (int i = 0; i < kMostBoxes; ++i) {
    const std::vector<std::byte> start = file.read(offset, 16);
    if (start.size() < 8) return {};
    Reader reader(start);
    std::uint64_t size = reader.number(4);
    const Bytes type = reader.take(4);
    std::uint64_t header = 8;
    if (size == 1) {
      size = reader.number(8);
      header = 16;
    }
    if (size == 0) size = file.size() - offset;
    if (size < header) return {};
    if (std::string_view(reinterpret_cast<const char*>(type.data()), 4) == "meta") {
      if (size < header + 4 || size > kLargestMetaBox) return {};
      return file.read(offset + header + 4, static_cast<std::size_t>(size - header - 4));
    }
    if (size > file.size() - offset) return {};
    offset += size;
  }
  return {};
}

std::optional<std::uint64_t> primaryItemOf(const std::vector<Box>& meta) {
  const auto content = contentOf(meta, "pitm");
  if (!content) return std::nullopt;
  Reader reader(*content);
  const std::uint64_t version = reader.number(1);
  (void)reader.take(3);
  const std::uint64_t item = reader.number(version == 0 ? 2 : 4);
  return reader.ok() ? std::optional(item) : std::nullopt;
}

}  // namespace

OrientationCode heifTurnOf(const PictureFile& file) {
  const std::vector<std::byte> bytes = metaBoxOf(file);
  const std::vector<Box> meta = boxesIn(bytes);
  const auto item = primaryItemOf(meta);
  const auto itemProperties = contentOf(meta, "iprp");
  if (!item || !itemProperties) return 1;
  const std::vector<Box> lists = boxesIn(*itemProperties);
  const auto all = contentOf(lists, "ipco");
  if (!all) return 1;
  const std::vector<Box> properties = boxesIn(*all);
  Turn turn;
  for (const Box& list : lists) {
    if (list.type != "ipma") continue;
    for (const std::size_t index : propertiesOfItem(list.content, *item)) {
      if (index >= 1 && index <= properties.size()) turn = applied(turn, properties[index - 1]);
    }
  }
  for (std::size_t i = 0; i < kTurnOfCode.size(); ++i) {
    if (kTurnOfCode[i] == turn) return static_cast<OrientationCode>(i + 1);
  }
  return 1;
}

}  // namespace lumivane
