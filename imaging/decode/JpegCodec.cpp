#include "imaging/decode/JpegCodec.h"

#include <algorithm>

#include "compositor/model/PlanarRows.h"
#include "imaging/decode/JpegReader.h"
#include "imaging/decode/MipChain.h"
#include "imaging/decode/PictureWriter.h"
#include "imaging/decode/SrgbTransform.h"

namespace lumivane {

namespace {

// The coarsest of the library's own scales that leaves no side shorter than wanted. It costs less than nothing:
// coefficients that would be thrown away are not transformed at all.
int scaleDenominator(SizePx size, int maxPixelSize) {
  const int longer = std::max(size.width, size.height);
  for (const int denominator : {8, 4, 2}) {
    if ((longer + denominator - 1) / denominator >= maxPixelSize) return denominator;
  }
  return 1;
}

class JpegCodec final : public PictureCodec {
 public:
  JpegCodec(const PictureFile& file, SizePx size) : file_(file), header_{size, std::nullopt} {}

  const PictureHeader& header() const override { return header_; }

  BitmapRef decode(PixelSource& pool, int maxPixelSize, OrientationCode orientation) override {
    JpegReader reader(file_);
    if (!reader.readHeader() || reader.size() != header_.size) return nullptr;
    const auto transform = SrgbTransform::make(reader.colourProfile(), layoutOf(reader));
    const bool kept = transform == nullptr && fittingSize(header_.size, maxPixelSize) == header_.size;
    if (kept && reader.planes() && std::min(header_.size.width, header_.size.height) >= kSmallestPlanarSide)
      return decodePlanes(reader, pool, orientation);
    if (!reader.start(scaleDenominator(header_.size, maxPixelSize))) return nullptr;
    auto writer = PictureWriter::make(pool, reader.outputSize(), fittingSize(header_.size, maxPixelSize));
    if (!writer) return nullptr;
    while (writer->rowsLeft() > 0) {
      if (!readSome(reader, transform.get(), *writer)) return nullptr;
    }
    return reader.damaged() ? nullptr : writer->finish(orientation, true);
  }

 private:
  // Grey comes expanded, three times the same value: the first one is what its profile speaks of.
  static PixelLayout layoutOf(const JpegReader& reader) {
    return reader.components() == 1 ? PixelLayout{1, 3, 1} : PixelLayout{3, 1, 1};
  }

  // A picture in the usual colours that needs no shrinking stays in the form that it is stored in. Its small levels are
  // made on the way, while the rows that they come from are at hand.
  BitmapRef decodePlanes(JpegReader& reader, PixelSource& pool, OrientationCode orientation) const {
    PlanarLayout layout = packedPlanes(header_.size, *reader.planes());
    PixelBuffer pixels = pool.take(layout.bytes);
    if (pixels.bytes().empty() || !reader.startPlanes()) return nullptr;
    PlanarRows rows(layout, pixels.bytes());
    const BitmapLevel& stored = layout.levels[kFirstStoredLevel];
    for (int made = 0; reader.rowsRead() < header_.size.height;) {
      if (!reader.readPlaneRows(layout, pixels.bytes())) return nullptr;
      for (; made < std::min(reader.rowsRead() >> kFirstStoredLevel, stored.size.height); ++made) {
        rows.make(
            kFirstStoredLevel, made,
            pixels.bytes().data() + stored.offsetBytes + static_cast<std::size_t>(made) * stored.strideBytes);
      }
    }
    if (reader.damaged()) return nullptr;
    buildMipChain(pixels.bytes(), std::span(layout.levels).subspan(kFirstStoredLevel));
    return std::make_shared<const Bitmap>(std::move(pixels), std::move(layout), orientation);
  }

  static bool readSome(JpegReader& reader, const SrgbTransform* transform, PictureWriter& writer) {
    const int count = writer.rowsAtOnce();
    std::uint8_t* rows = writer.rows();
    if (!reader.readRows(rows, writer.strideBytes(), count)) return false;
    for (int i = 0; transform != nullptr && i < count; ++i) {
      std::uint8_t* row = rows + static_cast<std::size_t>(i) * writer.strideBytes();
      transform->apply(row, row, static_cast<std::size_t>(writer.source().width));
    }
    writer.commit(count);
    return true;
  }

  const PictureFile& file_;
  PictureHeader header_;
};

}  // namespace

OpenedCodec openJpegCodec(const PictureFile& file) {
  JpegReader reader(file);
  if (!reader.readHeader()) {
    return {nullptr, reader.cameToTheEnd() ? ImageSourceStatus::Incomplete : ImageSourceStatus::InvalidData};
  }
  if (reader.components() == 4) return {nullptr, ImageSourceStatus::Complete};
  return {std::make_unique<JpegCodec>(file, reader.size()), ImageSourceStatus::Complete};
}

}  // namespace lumivane
