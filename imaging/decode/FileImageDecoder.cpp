#include "imaging/decode/FileImageDecoder.h"

#include <utility>

#include "imaging/decode/PictureFile.h"
#include "imaging/decode/PictureMetadata.h"
#include "imaging/decode/PictureOpening.h"

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

class FileImageSource final : public ImageSource {
 public:
  FileImageSource(PictureFile file, std::shared_ptr<PixelSource> pixels)
      : file_(std::move(file)), pixels_(std::move(pixels)) {
    OpenedPicture picture = openPicture(file_);
    type_ = picture.type;
    opened_ = std::move(picture.opened);
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
    return opened_.codec->decode(*pixels_, maxPixelSize, stored >= 1 && stored <= 8 ? stored : 1);
  }

 private:
  PictureFile file_;
  std::shared_ptr<PixelSource> pixels_;
  PictureType type_ = PictureType::Unknown;
  OpenedCodec opened_;  // refers to file_
  std::optional<PropertyDictionary> properties_;
};

}  // namespace

FileImageDecoder::FileImageDecoder(PixelPool::Limits limits) : pixels_(std::make_shared<PixelPool>(limits)) {}

std::unique_ptr<ImageSource> FileImageDecoder::open(const std::string& path) {
  auto file = PictureFile::open(path);
  if (!file) return nullptr;
  return std::make_unique<FileImageSource>(std::move(*file), pixels_);
}

}  // namespace lumivane
