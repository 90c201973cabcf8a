#include "imaging/decode/FileImageDecoder.h"

#include <utility>

#include "imaging/decode/BmpCodec.h"
#include "imaging/decode/HeifTurn.h"
#include "imaging/decode/JpegCodec.h"
#include "imaging/decode/JxlBoxes.h"
#include "imaging/decode/PictureFile.h"
#include "imaging/decode/PictureMetadata.h"
#include "imaging/decode/PictureType.h"
#include "imaging/decode/RawCodec.h"
#include "imaging/decode/VipsCodec.h"

namespace lumivane {

namespace {

// More pixels than any camera makes; beyond this a picture is refused before memory is asked for.
constexpr long long kMostPixels = 600'000'000;
// Most formats are decoded as a whole by their libraries, a few bytes for each pixel.
constexpr long long kMostPixelsAtOnce = 300'000'000;

bool isDecodableSize(SizePx size, PictureType type) {
  const bool rowByRow = type == PictureType::Jpeg || type == PictureType::Png || type == PictureType::Tiff ||
                        type == PictureType::Bmp;
  if (size.width <= 0 || size.height <= 0) return false;
  return static_cast<long long>(size.width) * size.height <= (rowByRow ? kMostPixels : kMostPixelsAtOnce);
}

OpenedCodec openTiff(const PictureFile& file) {
  if (mayBeCameraRaw(file)) {
    OpenedCodec raw = openRawCodec(file);
    if (raw.status != ImageSourceStatus::UnknownType) return raw;
  }
  return openVipsCodec(file, PictureType::Tiff, {});
}

OpenedCodec openJpeg(const PictureFile& file) {
  OpenedCodec opened = openJpegCodec(file);
  if (opened.codec || opened.status != ImageSourceStatus::Complete) return opened;
  return openVipsCodec(file, PictureType::Jpeg, {});
}

OpenedCodec openJxl(const PictureFile& file) {
  const JxlHeader header = jxlHeaderOf(file).value_or(JxlHeader{});
  return openVipsCodec(file, PictureType::Jxl, {.turn = header.turn, .premultiplied = header.premultiplied});
}

OpenedCodec openCodec(const PictureFile& file, PictureType type) {
  switch (type) {
    case PictureType::Unknown:
      break;
    case PictureType::Jpeg:
      return openJpeg(file);
    case PictureType::Tiff:
      return openTiff(file);
    case PictureType::Bmp:
      return openBmpCodec(file);
    case PictureType::CameraRaw:
      return openRawCodec(file);
    case PictureType::Heif:
      return openVipsCodec(file, type, {.turn = heifTurnOf(file)});
    case PictureType::Jxl:
      return openJxl(file);
    case PictureType::Jp2:
      return openVipsCodec(file, type, {.turn = 1});
    case PictureType::Png:
    case PictureType::Gif:
    case PictureType::WebP:
      return openVipsCodec(file, type, {});
  }
  return {nullptr, ImageSourceStatus::UnknownType};
}

class FileImageSource final : public ImageSource {
 public:
  FileImageSource(PictureFile file, std::shared_ptr<PixelPool> pool)
      : file_(std::move(file)), pool_(std::move(pool)) {
    if (file_.size() == 0) {
      opened_.status = ImageSourceStatus::UnexpectedEnd;
      return;
    }
    type_ = pictureTypeOf(file_.read(0, kTypeBytes));
    opened_ = openCodec(file_, type_);
  }

  ImageSourceStatus status() const override { return opened_.status; }

  std::optional<PropertyDictionary> properties() override {
    if (!opened_.codec) return std::nullopt;
    if (!properties_) {
      properties_ = readPictureMetadata(file_, type_, opened_.codec->exif());
      const PictureHeader& header = opened_.codec->header();
      properties_->pixelWidth = header.size.width;
      properties_->pixelHeight = header.size.height;
      if (header.ownTurn) properties_->orientation = header.ownTurn;
    }
    return properties_;
  }

  BitmapRef thumbnail(int maxPixelSize) override {
    if (!opened_.codec || maxPixelSize < 1 || !isDecodableSize(opened_.codec->header().size, type_))
      return nullptr;
    const OrientationCode stored = properties()->orientation.value_or(1);
    return opened_.codec->decode(*pool_, maxPixelSize, stored >= 1 && stored <= 8 ? stored : 1);
  }

 private:
  PictureFile file_;
  std::shared_ptr<PixelPool> pool_;
  PictureType type_ = PictureType::Unknown;
  OpenedCodec opened_;  // refers to file_
  std::optional<PropertyDictionary> properties_;
};

}  // namespace

FileImageDecoder::FileImageDecoder(PixelPool::Limits limits) : pool_(std::make_shared<PixelPool>(limits)) {}

std::unique_ptr<ImageSource> FileImageDecoder::open(const std::string& path) {
  auto file = PictureFile::open(path);
  if (!file) return nullptr;
  return std::make_unique<FileImageSource>(std::move(*file), pool_);
}

void FileImageDecoder::trim() {
  pool_->trim();
}

}  // namespace lumivane
