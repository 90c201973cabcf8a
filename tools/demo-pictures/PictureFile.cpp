#include "tools/demo-pictures/PictureFile.h"

#include <cstdio>
#include <exiv2/exiv2.hpp>
#include <filesystem>
#include <fstream>

// jpeglib.h needs <cstdio> before it.
#include <jpeglib.h>

namespace lumivane::demo {
namespace {

constexpr int kQuality = 90;

std::vector<unsigned char> encoded(const Canvas& canvas) {
  std::vector<std::uint8_t> pixels = canvas.bytes();
  jpeg_compress_struct jpeg{};
  jpeg_error_mgr errors{};
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_compress(&jpeg);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&jpeg, &data, &size);
  jpeg.image_width = static_cast<JDIMENSION>(canvas.width());
  jpeg.image_height = static_cast<JDIMENSION>(canvas.height());
  jpeg.input_components = 3;
  jpeg.in_color_space = JCS_RGB;
  jpeg_set_defaults(&jpeg);
  jpeg_set_quality(&jpeg, kQuality, TRUE);
  jpeg_start_compress(&jpeg, TRUE);
  while (jpeg.next_scanline < jpeg.image_height) {
    JSAMPROW row = pixels.data() + std::size_t{jpeg.next_scanline} * jpeg.image_width * 3;
    jpeg_write_scanlines(&jpeg, &row, 1);
  }
  jpeg_finish_compress(&jpeg);
  std::vector<unsigned char> file(data, data + size);
  jpeg_destroy_compress(&jpeg);
  std::free(data);
  return file;
}

// Degrees, minutes and hundredths of seconds, as Exif counts.
std::string sexagesimal(double degrees) {
  const long hundredths = std::lround(std::abs(degrees) * 360000);
  return std::to_string(hundredths / 360000) + "/1 " + std::to_string(hundredths / 6000 % 60) + "/1 " +
         std::to_string(hundredths % 6000) + "/100";
}

void describe(Exiv2::ExifData& exif, const DemoPicture& picture) {
  exif["Exif.Image.Orientation"] = static_cast<std::uint16_t>(picture.format.storedTurned ? 6 : 1);
  exif["Exif.Image.Software"] = "lumivane-demo-pictures";
  exif["Exif.Photo.DateTimeOriginal"] = picture.taken;
  if (!picture.position) return;
  exif["Exif.GPSInfo.GPSVersionID"] = "2 3 0 0";
  exif["Exif.GPSInfo.GPSLatitudeRef"] = picture.position->latitude < 0 ? "S" : "N";
  exif["Exif.GPSInfo.GPSLatitude"] = sexagesimal(picture.position->latitude);
  exif["Exif.GPSInfo.GPSLongitudeRef"] = picture.position->longitude < 0 ? "W" : "E";
  exif["Exif.GPSInfo.GPSLongitude"] = sexagesimal(picture.position->longitude);
}

void describe(Exiv2::IptcData& iptc, const DemoPicture& picture) {
  iptc["Iptc.Envelope.CharacterSet"] = "\x1b%G";  // UTF-8
  iptc["Iptc.Application2.Caption"] = picture.caption;
  for (const std::string& keyword : picture.keywords) {
    Exiv2::StringValue value(keyword);
    iptc.add(Exiv2::IptcKey("Iptc.Application2.Keywords"), &value);
  }
}

}  // namespace

Result<Done> writePicture(const Canvas& canvas, const DemoPicture& picture, const std::string& path) {
  try {
    const std::vector<unsigned char> plain =
        encoded(picture.format.storedTurned ? canvas.turnedLeft() : canvas);
    const Exiv2::Image::AutoPtr image =
        Exiv2::ImageFactory::open(plain.data(), static_cast<long>(plain.size()));
    image->readMetadata();
    describe(image->exifData(), picture);
    describe(image->iptcData(), picture);
    image->writeMetadata();
    Exiv2::BasicIo& io = image->io();
    if (io.open() != 0) return Error{"the encoded picture cannot be read back"};
    const Exiv2::DataBuf whole = io.read(static_cast<long>(io.size()));
    const std::string unfinished = path + ".part";
    std::ofstream out(unfinished, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(whole.pData_), whole.size_);
    out.close();
    if (!out) return Error{"cannot write " + unfinished};
    std::filesystem::rename(unfinished, path);
    return Done{};
  } catch (const std::exception& failure) {
    return Error{path + ": " + failure.what()};
  }
}

}  // namespace lumivane::demo
