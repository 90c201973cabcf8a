#include "imaging/decode/JpegCodec.h"

#include <algorithm>

#include "imaging/decode/JpegReader.h"
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
