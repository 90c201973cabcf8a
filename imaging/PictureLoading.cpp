#include "imaging/PictureLoading.h"

#include <algorithm>
#include <utility>

#include "imaging/ImageInfo.h"
#include "platform/PrintableText.h"

namespace lumivane {

namespace {

using Kind = LoadMessage::Kind;

// The steps of one attempt; each that fails says why and ends it.
class Loading {
 public:
  Loading(ImageDecoder& decoder, const std::string& path, const LoadLimits& limits)
      : decoder_(decoder), path_(path), limits_(limits) {}

  LoadOutcome run() {
    if (open() && readProperties() && isAccepted()) decode();
    return std::move(outcome_);
  }

 private:
  void logError(std::string text) { outcome_.messages.push_back({Kind::LogError, std::move(text), {}}); }
  void displayError(std::string text, std::string with) {
    outcome_.messages.push_back({Kind::DisplayError, std::move(text), std::move(with)});
  }

  // What loadImageWithFilename says by itself, and then what the attempt says of it.
  bool open() {
    loadImageWithFilename();
    if (!source_) {
      logError("Image gone: " + printable(path_) + "!");
      return false;
    }
    if (source_->status() == ImageSourceStatus::Complete) return true;
    logError("Image source status: " + std::to_string(static_cast<int>(source_->status())) + " !\n");
    return false;
  }

  void loadImageWithFilename() {
    if (path_.empty()) return logError("loadImageWithFilename: filename = nil!");
    // No file can have such a name, so nothing of it may reach the system, which would see only its start.
    if (path_.find('\0') != std::string::npos)
      return displayError("File name contains weird char: ", printable(path_));
    source_ = decoder_.open(path_);
    if (source_) return;
    displayError("Image gone: ", printable(path_));
    outcome_.messages.push_back({Kind::FileAccessError, {}, path_});
  }

  bool readProperties() {
    properties_ = source_->properties();
    if (!properties_) logError("Could not retrieve properties of file " + printable(path_));
    return properties_.has_value();
  }

  bool isAccepted() {
    const ImageInfo info = getImageSizeFrom(*properties_);
    // Only when both sides are too long; panoramas may be long on one.
    if (info.width > kLargestPixelSize && info.height > kLargestPixelSize) {
      displayError("Size of image ", printable(limits_.filenameOnScreen) + " > " +
                                         std::to_string(kLargestPixelSize) + " pixels!");
      return false;
    }
    if (static_cast<std::uint32_t>(info.width) >= limits_.excludeSize &&
        static_cast<std::uint32_t>(info.height) >= limits_.excludeSize) {
      return true;
    }
    logError("Image smaller than " + std::to_string(static_cast<std::int32_t>(limits_.excludeSize)) +
             " pixels: " + printable(path_));
    return false;
  }

  void decode() {
    BitmapRef image = source_->thumbnail(limits_.longestSide);
    if (!image) return logError("Image loading failed: " + printable(path_));
    outcome_.picture = LoadedPicture{std::move(image), std::move(*properties_)};
  }

  ImageDecoder& decoder_;
  const std::string& path_;
  const LoadLimits& limits_;
  std::unique_ptr<ImageSource> source_;
  std::optional<PropertyDictionary> properties_;
  LoadOutcome outcome_;
};

}  // namespace

LoadOutcome loadPicture(ImageDecoder& decoder, const std::string& path, const LoadLimits& limits) {
  return Loading(decoder, path, limits).run();
}

}  // namespace lumivane
