#include "imaging/decode/VipsCodec.h"

#include <vips/vips8>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "imaging/decode/PictureWriter.h"
#include "imaging/decode/PixelRows.h"
#include "imaging/decode/SrgbTransform.h"

namespace lumivane {

bool startVips() {
  static const bool started = [] {
    // The library's warnings about odd files are of no use to anybody who looks at pictures.
    g_log_set_handler(
        "VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_INFO),
        [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
    if (VIPS_INIT("lumivane") != 0) return false;
    vips_concurrency_set(1);
    vips_cache_set_max(0);
    // Never called by us; blocked as well, so that no other loader can fall back on them.
    for (const char* loader : {"VipsForeignLoadMagick", "VipsForeignLoadPdf", "VipsForeignLoadSvg"}) {
      vips_operation_block_set(loader, TRUE);
    }
    return true;
  }();
  return started;
}

namespace {

using vips::VImage;

// The file as the library's source, with a position of its own.
class VipsInput {
 public:
  explicit VipsInput(const PictureFile& file) : file_(file) {}

  vips::VSource source() {
    VipsSourceCustom* source = vips_source_custom_new();
    g_signal_connect(source, "read", G_CALLBACK(&VipsInput::read), this);
    g_signal_connect(source, "seek", G_CALLBACK(&VipsInput::seek), this);
    position_ = 0;
    return vips::VSource(VIPS_SOURCE(source));
  }

 private:
  static gint64 read(VipsSourceCustom*, void* buffer, gint64 bytes, VipsInput* self) {
    if (bytes <= 0) return 0;
    const std::size_t got = self->file_.readAt(
        self->position_, {static_cast<std::byte*>(buffer), static_cast<std::size_t>(bytes)});
    self->position_ += got;
    return static_cast<gint64>(got);
  }

  static gint64 seek(VipsSourceCustom*, gint64 offset, int whence, VipsInput* self) {
    gint64 base = 0;
    if (whence == SEEK_CUR) base = static_cast<gint64>(self->position_);
    if (whence == SEEK_END) base = static_cast<gint64>(self->file_.size());
    if (base + offset < 0) return -1;
    self->position_ = static_cast<std::uint64_t>(base + offset);
    return base + offset;
  }

  const PictureFile& file_;
  std::uint64_t position_ = 0;
};

VImage load(const vips::VSource& source, PictureType type) {
  vips::VOption* options =
      VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", VIPS_FAIL_ON_TRUNCATED);
  switch (type) {
    case PictureType::Jpeg:
      return VImage::jpegload_source(source, options);
    case PictureType::Png:
      return VImage::pngload_source(source, options);
    case PictureType::Gif:
      return VImage::gifload_source(source, options);
    case PictureType::Tiff:
      return VImage::tiffload_source(source, options);
    case PictureType::WebP:
      return VImage::webpload_source(source, options);
    // Our own limit of pixels is held before anything is decoded; the library's would refuse long panoramas.
    case PictureType::Heif:
      return VImage::heifload_source(source, options->set("unlimited", true));
    case PictureType::Jxl:
      return VImage::jxlload_source(source, options);
    case PictureType::Jp2:
      return VImage::jp2kload_source(source, options);
    default:
      delete options;
      throw vips::VError("no loader");
  }
}

SizePx sizeOf(const VImage& image) {
  return {image.width(), image.height()};
}

// The embedded profile compiled for this picture's channels, or nothing when it is absent, useless or sRGB.
std::unique_ptr<SrgbTransform> transformOf(const VImage& image) {
  if (image.get_typeof(VIPS_META_ICC_NAME) == 0) return nullptr;
  if (image.format() != VIPS_FORMAT_UCHAR && image.format() != VIPS_FORMAT_USHORT) return nullptr;
  std::size_t bytes = 0;
  const auto* profile = static_cast<const std::byte*>(image.get_blob(VIPS_META_ICC_NAME, &bytes));
  const int extra = image.has_alpha() ? 1 : 0;
  const PixelLayout layout{image.bands() - extra, extra, image.format() == VIPS_FORMAT_UCHAR ? 1 : 2};
  return SrgbTransform::make({profile, bytes}, layout);
}

// Any picture as red, green, blue and maybe alpha of 8 bits, by the library's own rules.
VImage asSrgbBytes(VImage image) {
  if (vips_colourspace_issupported(image.get_image()) == 0) {
    image = image.extract_band(0, VImage::option()->set("n", image.bands() >= 3 ? 3 : 1))
                .copy(VImage::option()->set("interpretation", image.bands() >= 3 ? VIPS_INTERPRETATION_sRGB
                                                                                 : VIPS_INTERPRETATION_B_W));
  }
  image = image.colourspace(VIPS_INTERPRETATION_sRGB);
  if (image.format() != VIPS_FORMAT_UCHAR) image = image.cast(VIPS_FORMAT_UCHAR);
  if (image.bands() > 4) image = image.extract_band(0, VImage::option()->set("n", 4));
  return image;
}

class VipsCodec final : public PictureCodec {
 public:
  VipsCodec(const PictureFile& file, PictureType type)
      : input_(file), type_(type), image_(load(input_.source(), type)) {}

  void setFacts(ContainerFacts facts) {
    header_ = {sizeOf(image_), facts.turn};
    premultiplied_ = facts.premultiplied;
    if (facts.turn.value_or(1) >= 5) std::swap(header_.size.width, header_.size.height);
  }

  const PictureHeader& header() const override { return header_; }

  std::span<const std::byte> exif() const override {
    if (type_ != PictureType::Heif || image_.get_typeof(VIPS_META_EXIF_NAME) == 0) return {};
    std::size_t bytes = 0;
    const auto* block = static_cast<const std::byte*>(image_.get_blob(VIPS_META_EXIF_NAME, &bytes));
    constexpr std::string_view kName("Exif\0\0", 6);
    const bool named = bytes >= kName.size() && std::memcmp(block, kName.data(), kName.size()) == 0;
    return std::span(block, bytes).subspan(named ? kName.size() : 0);
  }

  BitmapRef decode(PixelSource& pool, int maxPixelSize, OrientationCode orientation) override {
    try {
      return decodeOrThrow(pool, maxPixelSize, header_.ownTurn ? 1 : orientation);
    } catch (const std::exception&) {  // vips::VError among them
      vips_error_clear();
      return nullptr;
    }
  }

 private:
  BitmapRef decodeOrThrow(PixelSource& pool, int maxPixelSize, OrientationCode orientation) {
    // Rows can be read from the top only once.
    VImage image = used_ ? load(input_.source(), type_) : image_;
    used_ = true;
    if (premultiplied_ && image.has_alpha()) image = image.unpremultiply().cast(image.format());
    const auto transform = transformOf(image);
    if (!transform) image = asSrgbBytes(image);
    auto writer = PictureWriter::make(pool, sizeOf(image), fittingSize(sizeOf(image), maxPixelSize));
    if (!writer) return nullptr;
    const vips::VRegion region = image.region();
    bool opaque = true;
    while (writer->rowsLeft() > 0) opaque &= readSome(image, region, transform.get(), *writer);
    return writer->finish(orientation, opaque);
  }

  static bool readSome(const VImage& image, const vips::VRegion& region, const SrgbTransform* transform,
                       PictureWriter& writer) {
    const int count = writer.rowsAtOnce();
    const int top = writer.source().height - writer.rowsLeft();
    const auto pixels = static_cast<std::size_t>(writer.source().width);
    region.prepare(0, top, writer.source().width, count);
    std::uint8_t* out = writer.rows();
    bool opaque = true;
    for (int i = 0; i < count; ++i, out += writer.strideBytes()) {
      const VipsPel* in = VIPS_REGION_ADDR(region.get_region(), 0, top + i);
      if (transform != nullptr) {
        spreadAlpha(image, in, out, pixels);
        transform->apply(in, out, pixels);
      } else {
        spreadToRgba(image.bands(), in, out, pixels);
      }
      if (image.has_alpha()) opaque &= premultiplyRow(out, pixels);
    }
    writer.commit(count);
    return opaque;
  }

  static void spreadAlpha(const VImage& image, const VipsPel* in, std::uint8_t* out, std::size_t pixels) {
    const std::size_t channelBytes = image.format() == VIPS_FORMAT_USHORT ? 2 : 1;
    const auto bands = static_cast<std::size_t>(image.bands());
    if (!image.has_alpha()) {
      for (std::size_t x = 0; x < pixels; ++x) out[4 * x + 3] = 255;
      return;
    }
    // Of 16 bits the upper 8, which come second.
    const VipsPel* alpha = in + bands * channelBytes - 1;
    for (std::size_t x = 0; x < pixels; ++x) out[4 * x + 3] = alpha[x * bands * channelBytes];
  }

  VipsInput input_;
  PictureType type_;
  VImage image_;
  bool used_ = false;
  bool premultiplied_ = false;
  PictureHeader header_;
};

}  // namespace

OpenedCodec openVipsCodec(const PictureFile& file, PictureType type, ContainerFacts facts) {
  if (!startVips()) return {nullptr, ImageSourceStatus::UnknownType};
  try {
    auto codec = std::make_unique<VipsCodec>(file, type);
    codec->setFacts(facts);
    return {std::move(codec), ImageSourceStatus::Complete};
  } catch (const std::exception&) {
    vips_error_clear();
    return {nullptr, ImageSourceStatus::InvalidData};
  }
}

}  // namespace lumivane
