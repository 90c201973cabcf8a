#include "imaging/decode/BmpCodec.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "imaging/decode/BmpHeader.h"
#include "imaging/decode/PictureWriter.h"
#include "imaging/decode/PixelRows.h"

namespace lumivane {

namespace {

// A run-length picture is small for its size; what is longer is not one.
constexpr std::size_t kLargestRunLengthData = std::size_t{256} << 20;

// The palette indices of a run-length picture, bottom row first. What the runs leave out keeps index 0.
class RunLengthReader {
 public:
  RunLengthReader(SizePx size, bool fourBits, std::vector<std::byte> data)
      : size_(size),
        fourBits_(fourBits),
        data_(std::move(data)),
        indices_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), 0) {}

  // False when the data ends before the picture does.
  bool read() {
    while (y_ < size_.height) {
      if (at_ + 2 > data_.size()) return false;
      const unsigned count = next();
      const unsigned value = next();
      if (count > 0)
        run(count, value);
      else if (value == 1)
        return true;
      else if (value == 0)
        endLine();
      else if (value == 2)
        move();
      else
        literal(value);
    }
    return true;
  }

  const std::vector<std::uint8_t>& indices() const { return indices_; }

 private:
  unsigned next() { return at_ < data_.size() ? std::to_integer<unsigned>(data_[at_++]) : 0; }

  void endLine() {
    x_ = 0;
    ++y_;
  }

  void move() {
    x_ += static_cast<int>(next());
    y_ += static_cast<int>(next());
  }

  void put(unsigned index) {
    if (x_ < size_.width && y_ < size_.height) {
      indices_[static_cast<std::size_t>(y_) * static_cast<std::size_t>(size_.width) +
               static_cast<std::size_t>(x_)] = static_cast<std::uint8_t>(index);
    }
    if (x_ < size_.width) ++x_;
  }

  void run(unsigned count, unsigned value) {
    for (unsigned i = 0; i < count; ++i) put(fourBits_ ? nibble(value, i) : value);
  }

  void literal(unsigned count) {
    unsigned value = 0;
    for (unsigned i = 0; i < count; ++i) {
      if (!fourBits_ || i % 2 == 0) value = next();
      put(fourBits_ ? nibble(value, i) : value);
    }
    const unsigned bytes = fourBits_ ? (count + 1) / 2 : count;
    if (bytes % 2 != 0) (void)next();  // pairs of bytes only
  }

  static unsigned nibble(unsigned value, unsigned i) { return i % 2 == 0 ? value >> 4 : value & 0xF; }

  SizePx size_;
  bool fourBits_;
  std::vector<std::byte> data_;
  std::vector<std::uint8_t> indices_;
  std::size_t at_ = 0;
  int x_ = 0;
  int y_ = 0;
};

class BmpCodec final : public PictureCodec {
 public:
  BmpCodec(const PictureFile& file, BmpHeader bmp)
      : file_(file), bmp_(std::move(bmp)), header_{bmp_.size, 1} {}

  const PictureHeader& header() const override { return header_; }

  BitmapRef decode(PixelSource& pool, int maxPixelSize, OrientationCode) override {
    if (bmp_.packing != BmpHeader::Packing::Plain && !unpackRuns()) return nullptr;
    auto writer = PictureWriter::make(pool, bmp_.size, fittingSize(bmp_.size, maxPixelSize));
    if (!writer) return nullptr;
    bool opaque = true;
    while (writer->rowsLeft() > 0) {
      const int y = bmp_.size.height - writer->rowsLeft();
      std::uint8_t* out = writer->rows();
      if (!readRow(bmp_.topDown ? y : bmp_.size.height - 1 - y, out)) return nullptr;
      opaque &= premultiplyRow(out, static_cast<std::size_t>(bmp_.size.width));
      writer->commit(1);
    }
    return writer->finish(1, opaque);
  }

 private:
  bool unpackRuns() {
    if (file_.size() <= bmp_.pixelsAt || file_.size() - bmp_.pixelsAt > kLargestRunLengthData) return false;
    RunLengthReader reader(bmp_.size, bmp_.packing == BmpHeader::Packing::RunLength4,
                           file_.read(bmp_.pixelsAt, static_cast<std::size_t>(file_.size())));
    if (!reader.read()) return false;
    indices_ = reader.indices();
    return true;
  }

  // Row `stored` in the order of the file, as RGBA.
  bool readRow(int stored, std::uint8_t* out) {
    const auto width = static_cast<std::size_t>(bmp_.size.width);
    if (!indices_.empty()) {
      const std::uint8_t* in = indices_.data() + static_cast<std::size_t>(stored) * width;
      for (std::size_t x = 0; x < width; ++x) putColour(in[x], out + 4 * x);
      return true;
    }
    const std::size_t rowBytes = (width * static_cast<std::size_t>(bmp_.bitsPerPixel) + 31) / 32 * 4;
    row_.resize(rowBytes);
    const std::uint64_t at = bmp_.pixelsAt + static_cast<std::uint64_t>(stored) * rowBytes;
    // The filling at the end of the very last row is left out by some writers.
    const std::size_t needed = (width * static_cast<std::size_t>(bmp_.bitsPerPixel) + 7) / 8;
    if (file_.readAt(at, row_) < needed) return false;
    for (std::size_t x = 0; x < width; ++x) putPixel(x, out + 4 * x);
    return true;
  }

  void putPixel(std::size_t x, std::uint8_t* out) const {
    if (bmp_.bitsPerPixel <= 8) {
      const auto bits = static_cast<std::size_t>(bmp_.bitsPerPixel);
      const std::size_t shift = 8 - bits - x * bits % 8;
      putColour(std::to_integer<unsigned>(row_[x * bits / 8]) >> shift & ((1U << bits) - 1), out);
      return;
    }
    const auto bytes = static_cast<std::size_t>(bmp_.bitsPerPixel / 8);
    std::uint32_t pixel = 0;
    for (std::size_t i = bytes; i-- > 0;)
      pixel = pixel << 8 | std::to_integer<std::uint32_t>(row_[x * bytes + i]);
    for (std::size_t c = 0; c < 3; ++c) out[c] = bmp_.channels[c].valueIn(pixel);
    out[3] = bmp_.channels[3].mask == 0 ? 255 : bmp_.channels[3].valueIn(pixel);
  }

  void putColour(unsigned index, std::uint8_t* out) const {
    std::copy(bmp_.palette[index].begin(), bmp_.palette[index].end(), out);
    out[3] = 255;
  }

  const PictureFile& file_;
  BmpHeader bmp_;
  PictureHeader header_;
  std::vector<std::uint8_t> indices_;  // of a run-length picture
  std::vector<std::byte> row_;
};

}  // namespace

OpenedCodec openBmpCodec(const PictureFile& file) {
  auto header = readBmpHeader(file.read(0, kBmpHeaderBytes));
  if (!header) return {nullptr, ImageSourceStatus::InvalidData};
  return {std::make_unique<BmpCodec>(file, std::move(*header)), ImageSourceStatus::Complete};
}

}  // namespace lumivane
