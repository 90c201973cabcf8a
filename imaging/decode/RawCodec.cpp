#include "imaging/decode/RawCodec.h"

#include <libraw/libraw.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "imaging/decode/PictureWriter.h"

namespace lumivane {

namespace {

constexpr std::uint32_t kMakeTag = 271;
constexpr std::uint32_t kDngVersionTag = 50706;

// LibRaw says how the sensor was held as bits: 1 mirrored, 2 upside down, 4 turned by a quarter.
OrientationCode codeOfFlip(int flip) {
  constexpr OrientationCode kCodes[8] = {1, 2, 4, 3, 5, 8, 6, 7};
  return kCodes[flip & 7];
}

std::uint32_t number(const std::vector<std::byte>& bytes, std::size_t at, std::size_t count, bool little) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t from = at + (little ? count - 1 - i : i);
    value = value << 8 | (from < bytes.size() ? std::to_integer<std::uint32_t>(bytes[from]) : 0);
  }
  return value;
}

class RawCodec final : public PictureCodec {
 public:
  // LibRaw's own error codes; 0 is success.
  int open(const PictureFile& file) {
    raw_.imgdata.params.use_camera_wb = 1;
    raw_.imgdata.params.output_color = 1;  // sRGB
    raw_.imgdata.params.output_bps = 8;
    raw_.imgdata.params.max_raw_memory_mb = 2048;
    const int error = raw_.open_file(file.reopenablePath().c_str());
    if (error != LIBRAW_SUCCESS) return error;
    header_ = {sizeWithoutFlip(file), codeOfFlip(raw_.imgdata.sizes.flip)};
    raw_.imgdata.params.user_flip = 0;
    raw_.imgdata.sizes.flip = 0;
    return LIBRAW_SUCCESS;
  }

  const PictureHeader& header() const override { return header_; }

  BitmapRef decode(PixelSource& pool, int maxPixelSize, OrientationCode orientation) override {
    try {
      if (raw_.unpack() != LIBRAW_SUCCESS || raw_.dcraw_process() != LIBRAW_SUCCESS) return nullptr;
      return write(pool, maxPixelSize, orientation);
    } catch (const std::exception&) {
      return nullptr;
    }
  }

 private:
  // The size after processing. LibRaw can compute it for sensors with slanted or oblong pixels as well, but an
  // object that was asked for it cannot decode any more.
  SizePx sizeWithoutFlip(const PictureFile& file) {
    const auto& sizes = raw_.imgdata.sizes;
    if (raw_.is_fuji_rotated() == 0 && sizes.pixel_aspect == 1) return {sizes.width, sizes.height};
    const auto measured = std::make_unique<LibRaw>();
    measured->imgdata.params.user_flip = 0;
    if (measured->open_file(file.reopenablePath().c_str()) != LIBRAW_SUCCESS) return {};
    (void)measured->adjust_sizes_info_only();
    return {measured->imgdata.sizes.iwidth, measured->imgdata.sizes.iheight};
  }

  BitmapRef write(PixelSource& pool, int maxPixelSize, OrientationCode orientation) {
    int width = 0, height = 0, colours = 0, bits = 0;
    raw_.get_mem_image_format(&width, &height, &colours, &bits);
    if (bits != 8 || (colours != 1 && colours != 3) || width <= 0 || height <= 0) return nullptr;
    const auto stride = static_cast<std::size_t>(width) * static_cast<std::size_t>(colours);
    std::vector<std::uint8_t> rgb(stride * static_cast<std::size_t>(height));
    if (raw_.copy_mem_image(rgb.data(), static_cast<int>(stride), 0) != LIBRAW_SUCCESS) return nullptr;
    const SizePx size{width, height};
    auto writer = PictureWriter::make(pool, size, fittingSize(size, maxPixelSize));
    if (!writer) return nullptr;
    for (const std::uint8_t* in = rgb.data(); writer->rowsLeft() > 0; in += stride) {
      spread(in, colours, writer->rows(), width);
      writer->commit(1);
    }
    return writer->finish(orientation, true);
  }

  static void spread(const std::uint8_t* in, int colours, std::uint8_t* out, int width) {
    for (int x = 0; x < width; ++x, in += colours, out += 4) {
      for (int c = 0; c < 3; ++c) out[c] = in[colours == 3 ? c : 0];
      out[3] = 255;
    }
  }

  LibRaw raw_;
  PictureHeader header_;
};

}  // namespace

bool mayBeCameraRaw(const PictureFile& tiff) {
  const std::vector<std::byte> start = tiff.read(0, 16);
  const bool little = !start.empty() && start[0] == std::byte{'I'};
  if (number(start, 2, 2, little) != 42) return false;
  const std::vector<std::byte> directory = tiff.read(number(start, 4, 4, little), 2 + 12 * 512);
  const std::size_t entries = number(directory, 0, 2, little);
  for (std::size_t i = 0; i < entries && 2 + 12 * i + 12 <= directory.size(); ++i) {
    const std::uint32_t tag = number(directory, 2 + 12 * i, 2, little);
    if (tag == kMakeTag || tag == kDngVersionTag) return true;
  }
  return false;
}

OpenedCodec openRawCodec(const PictureFile& file) {
  try {
    auto codec = std::make_unique<RawCodec>();
    const int error = codec->open(file);
    if (error == LIBRAW_FILE_UNSUPPORTED) return {nullptr, ImageSourceStatus::UnknownType};
    if (error != LIBRAW_SUCCESS) return {nullptr, ImageSourceStatus::InvalidData};
    return {std::move(codec), ImageSourceStatus::Complete};
  } catch (const std::exception&) {
    return {nullptr, ImageSourceStatus::InvalidData};
  }
}

}  // namespace lumivane
