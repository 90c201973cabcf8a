#include "imaging/decode/JxlBoxes.h"

#include <jxl/decode.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

namespace lumivane {

namespace {

constexpr std::size_t kChunkBytes = std::size_t{256} << 10;
constexpr std::size_t kLargestBox = std::size_t{16} << 20;
constexpr std::uint64_t kMostBytesRead = std::uint64_t{256} << 20;

struct DestroyDecoder {
  void operator()(JxlDecoder* decoder) const { JxlDecoderDestroy(decoder); }
};

// The library's decoder fed from a file, a chunk whenever it asks for more.
class FedDecoder {
 public:
  FedDecoder(const PictureFile& file, int events) : file_(file), decoder_(JxlDecoderCreate(nullptr)) {
    ready_ = decoder_ && JxlDecoderSubscribeEvents(decoder_.get(), events) == JXL_DEC_SUCCESS;
  }

  JxlDecoder* get() const { return decoder_.get(); }

  // The next event; an error when the file has no more to give.
  JxlDecoderStatus next() {
    if (!ready_) return JXL_DEC_ERROR;
    JxlDecoderStatus status = JxlDecoderProcessInput(get());
    while (status == JXL_DEC_NEED_MORE_INPUT) {
      if (!feed()) return JXL_DEC_ERROR;
      status = JxlDecoderProcessInput(get());
    }
    return status;
  }

 private:
  bool feed() {
    const std::size_t unread = JxlDecoderReleaseInput(get());
    input_.erase(input_.begin(), input_.end() - static_cast<std::ptrdiff_t>(unread));
    const std::vector<std::byte> more = file_.read(offset_, kChunkBytes);
    if (more.empty() || offset_ > kMostBytesRead || input_.size() > kLargestBox) return false;
    offset_ += more.size();
    input_.insert(input_.end(), more.begin(), more.end());
    return JxlDecoderSetInput(get(), reinterpret_cast<const std::uint8_t*>(input_.data()), input_.size()) ==
           JXL_DEC_SUCCESS;
  }

  const PictureFile& file_;
  std::unique_ptr<JxlDecoder, DestroyDecoder> decoder_;
  bool ready_ = false;
  std::vector<std::byte> input_;
  std::uint64_t offset_ = 0;
};

// The content of one box as it arrives in pieces.
class BoxContent {
 public:
  bool begin(JxlDecoder* decoder) {
    bytes_.resize(kChunkBytes);
    filled_ = 0;
    return give(decoder);
  }
  bool grow(JxlDecoder* decoder) {
    collect(decoder);
    if (bytes_.size() >= kLargestBox) return false;
    bytes_.resize(bytes_.size() * 2);
    return give(decoder);
  }
  std::vector<std::byte> end(JxlDecoder* decoder) {
    collect(decoder);
    bytes_.resize(filled_);
    return std::move(bytes_);
  }

 private:
  bool give(JxlDecoder* decoder) {
    return JxlDecoderSetBoxBuffer(decoder, reinterpret_cast<std::uint8_t*>(bytes_.data()) + filled_,
                                  bytes_.size() - filled_) == JXL_DEC_SUCCESS;
  }
  void collect(JxlDecoder* decoder) { filled_ = bytes_.size() - JxlDecoderReleaseBoxBuffer(decoder); }

  std::vector<std::byte> bytes_;
  std::size_t filled_ = 0;
};

void store(std::string_view type, const std::vector<std::byte>& content, JxlMetadata& metadata) {
  constexpr std::size_t kOffsetBytes = 4;  // where the TIFF header begins, counted from behind this number
  if (type == "xml " && metadata.xmp.empty()) {
    metadata.xmp.assign(reinterpret_cast<const char*>(content.data()), content.size());
  }
  if (type == "Exif" && metadata.exif.empty() && content.size() > kOffsetBytes) {
    std::size_t offset = 0;
    for (std::size_t i = 0; i < kOffsetBytes; ++i)
      offset = offset << 8 | std::to_integer<std::size_t>(content[i]);
    if (offset >= content.size() - kOffsetBytes) return;
    metadata.exif.assign(content.begin() + static_cast<std::ptrdiff_t>(kOffsetBytes + offset), content.end());
  }
}

}  // namespace

std::optional<JxlHeader> jxlHeaderOf(const PictureFile& file) {
  FedDecoder decoder(file, JXL_DEC_BASIC_INFO);
  // Without this the library speaks of the picture as turned already.
  if (decoder.get() == nullptr || JxlDecoderSetKeepOrientation(decoder.get(), JXL_TRUE) != JXL_DEC_SUCCESS) {
    return std::nullopt;
  }
  if (decoder.next() != JXL_DEC_BASIC_INFO) return std::nullopt;
  JxlBasicInfo info = {};
  if (JxlDecoderGetBasicInfo(decoder.get(), &info) != JXL_DEC_SUCCESS) return std::nullopt;
  const int code = static_cast<int>(info.orientation);
  return JxlHeader{code >= 1 && code <= 8 ? code : 1, info.alpha_premultiplied != 0};
}

JxlMetadata jxlMetadataOf(const PictureFile& file) {
  JxlMetadata metadata;
  FedDecoder decoder(file, JXL_DEC_BOX);
  if (decoder.get() == nullptr || JxlDecoderSetDecompressBoxes(decoder.get(), JXL_TRUE) != JXL_DEC_SUCCESS)
    return metadata;
  BoxContent content;
  std::string wanted;  // type of the box being read, empty when it is skipped
  while (true) {
    const JxlDecoderStatus status = decoder.next();
    if (status == JXL_DEC_BOX_NEED_MORE_OUTPUT && !wanted.empty() && content.grow(decoder.get())) continue;
    if (!wanted.empty()) store(wanted, content.end(decoder.get()), metadata);
    wanted.clear();
    JxlBoxType type = {};
    if (status != JXL_DEC_BOX || JxlDecoderGetBoxType(decoder.get(), type, JXL_TRUE) != JXL_DEC_SUCCESS)
      return metadata;
    const std::string_view name(type, sizeof type);
    if ((name == "Exif" || name == "xml ") && content.begin(decoder.get())) wanted = name;
  }
}

}  // namespace lumivane
