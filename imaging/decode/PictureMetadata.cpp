#include "imaging/decode/PictureMetadata.h"

#include <exiv2/exiv2.hpp>

#include <limits>
#include <mutex>

#include "imaging/decode/ExivFileIo.h"
#include "imaging/decode/JxlBoxes.h"
#include "imaging/decode/MetadataItems.h"

namespace lumivane {

namespace {

std::mutex& exivMutex() {
  static std::mutex mutex;
  return mutex;
}

void parseExif(std::span<const std::byte> block, Exiv2::ExifData& exif) {
  if (block.empty() || block.size() > std::numeric_limits<std::uint32_t>::max()) return;
  Exiv2::ExifParser::decode(exif, reinterpret_cast<const Exiv2::byte*>(block.data()),
                            static_cast<std::uint32_t>(block.size()));
}

// Exiv2 0.27 knows nothing of JPEG XL's container, but it can read what lies in its boxes.
PropertyDictionary fromJxl(const PictureFile& file) {
  const JxlMetadata boxes = jxlMetadataOf(file);
  Exiv2::ExifData exif;
  Exiv2::IptcData iptc;
  Exiv2::XmpData xmp;
  parseExif(boxes.exif, exif);
  if (!boxes.xmp.empty()) (void)Exiv2::XmpParser::decode(xmp, boxes.xmp);
  return metadataItems(exif, iptc, xmp);
}

PropertyDictionary fromFile(const PictureFile& file, std::span<const std::byte> exif) {
  auto image = Exiv2::ImageFactory::open(Exiv2::BasicIo::AutoPtr(new ExivFileIo(file)));
  if (image.get() == nullptr) return {};
  image->readMetadata();
  if (image->exifData().empty()) parseExif(exif, image->exifData());
  return metadataItems(image->exifData(), image->iptcData(), image->xmpData());
}

}  // namespace

void startExiv() {
  static const bool started = [] {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::enableBMFF(true);
    return Exiv2::XmpParser::initialize();
  }();
  (void)started;  // Without XMP the rest is still worth reading.
}

PropertyDictionary readPictureMetadata(const PictureFile& file, PictureType type,
                                       std::span<const std::byte> exif) {
  const std::lock_guard lock(exivMutex());
  try {
    startExiv();
    return type == PictureType::Jxl ? fromJxl(file) : fromFile(file, exif);
  } catch (const std::exception&) {  // Exiv2::AnyError among them
    return {};
  }
}

}  // namespace lumivane
