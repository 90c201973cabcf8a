// What the show and the process that opens its pictures say to each other: plain data, checked when it is read.
//
// One request at a time; its answer repeats its number. A decode asks for the memory that it needs, is lent it, and
// answers where the pixels lie by their full size and form alone: packedLevels() and packedPlanes() say the rest.
//
// Threads: pure functions on values.
// Units:   pixels, bytes.
// Errors:  a message that is cut short, too long, of an unknown kind or absurd in any part reads as nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "compositor/model/Bitmap.h"
#include "imaging/ImageDecoder.h"

namespace lumivane {

// Counts up with every change of the messages: an old process may meet a new show while the program is replaced.
inline constexpr std::uint32_t kDecoderProtocol = 2;
inline constexpr std::size_t kLongestPath = 4095;  // the system's own limit
// Paths of one batch to measure. Together they must fit what a socket takes at once.
inline constexpr std::size_t kMostPathsAtOnce = 64;
inline constexpr std::size_t kMostPathBytesAtOnce = std::size_t{64} << 10;

using RequestNumber = std::uint32_t;
using PixelBufferNumber = std::uint32_t;

// --- From the show ---

struct OpenRequest {
  RequestNumber request = 0;
  std::string path;
};
// Of the picture opened last.
struct DecodeRequest {
  RequestNumber request = 0;
  std::int32_t maxPixelSize = 0;
};
// The answer to MemoryWish; the buffer's descriptor comes with it, every time.
struct MemoryLoan {
  RequestNumber request = 0;
  PixelBufferNumber buffer = 0;  // 0 = there is no memory
  std::uint64_t bytes = 0;
  std::vector<PixelBufferNumber> gone;  // those that exist no more
};
struct MeasureRequest {
  RequestNumber request = 0;
  std::vector<std::string> paths;
};
// The picture opened last is of no more use; there is no answer.
struct CloseRequest {};
using DecoderRequest = std::variant<OpenRequest, DecodeRequest, MemoryLoan, MeasureRequest, CloseRequest>;

// --- From the process ---

// The first message, once all is loaded and every door is closed that the system can close.
struct HelloAnswer {
  std::uint32_t protocol = kDecoderProtocol;
  bool filesReadOnly = false;
  bool systemCallsFiltered = false;
};
struct OpenAnswer {
  RequestNumber request = 0;
  bool opened = false;
  ImageSourceStatus status = ImageSourceStatus::Complete;
  std::optional<PropertyDictionary> properties;
};
struct MemoryWish {
  RequestNumber request = 0;
  std::uint64_t bytes = 0;
};
struct DecodeAnswer {
  RequestNumber request = 0;
  bool decoded = false;
  SizePx size;
  OrientationCode orientation = 1;
  bool opaque = false;
  bool inPlanes = false;  // otherwise in RGBA
  Chroma chroma = Chroma::None;
};
// As PictureDimensions::measure() answers.
struct MeasureAnswer {
  RequestNumber request = 0;
  std::vector<std::optional<SizePx>> sizes;
};
using DecoderAnswer = std::variant<HelloAnswer, OpenAnswer, MemoryWish, DecodeAnswer, MeasureAnswer>;

[[nodiscard]] std::vector<std::byte> encoded(const DecoderRequest& request);
[[nodiscard]] std::vector<std::byte> encoded(const DecoderAnswer& answer);
[[nodiscard]] std::optional<DecoderRequest> requestIn(std::span<const std::byte> message);
[[nodiscard]] std::optional<DecoderAnswer> answerIn(std::span<const std::byte> message);

}  // namespace lumivane
