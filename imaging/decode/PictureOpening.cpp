#include "imaging/decode/PictureOpening.h"

#include "imaging/decode/BmpCodec.h"
#include "imaging/decode/HeifTurn.h"
#include "imaging/decode/JpegCodec.h"
#include "imaging/decode/JxlBoxes.h"
#include "imaging/decode/RawCodec.h"
#include "imaging/decode/VipsCodec.h"

namespace lumivane {

namespace {

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

}  // namespace

OpenedPicture openPicture(const PictureFile& file) {
  if (file.size() == 0) return {PictureType::Unknown, {nullptr, ImageSourceStatus::UnexpectedEnd}};
  const PictureType type = pictureTypeOf(file.read(0, kTypeBytes));
  return {type, openCodec(file, type)};
}

}  // namespace lumivane
