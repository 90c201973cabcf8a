#include "imaging/process/DecoderProtocol.h"

#include <algorithm>

#include "imaging/process/PropertyWire.h"

namespace lumivane {
namespace {

constexpr std::size_t kMostBuffersGone = 4096;
constexpr int kLongestDecodedSide = 65536;  // of longer ones, the bytes could not be counted
constexpr std::uint32_t kNoPlanes = 0;      // otherwise 1 + the form of the colour planes

// The first byte of a message: which alternative of its variant follows.
using Kind = std::uint8_t;

ImageSourceStatus statusOf(WireReader& in) {
  const auto status = static_cast<ImageSourceStatus>(in.number<std::int32_t>());
  switch (status) {
    case ImageSourceStatus::Complete:
    case ImageSourceStatus::Incomplete:
    case ImageSourceStatus::UnknownType:
    case ImageSourceStatus::InvalidData:
    case ImageSourceStatus::UnexpectedEnd:
      return status;
    case ImageSourceStatus::DecoderFailed:  // not for the process itself to say
      break;
  }
  in.fail();
  return ImageSourceStatus::InvalidData;
}

template <typename Item, typename Read>
std::vector<Item> listIn(WireReader& in, std::size_t most, Read read) {
  const auto count = in.number<std::uint32_t>();
  if (count > most) in.fail();
  std::vector<Item> items;
  for (std::uint32_t i = 0; i < count && in.ok(); ++i) items.push_back(read());
  return items;
}

void write(WireWriter& out, SizePx size) {
  out.number(static_cast<std::int32_t>(size.width));
  out.number(static_cast<std::int32_t>(size.height));
}

SizePx sizeIn(WireReader& in) {
  const auto width = in.number<std::int32_t>();
  const auto height = in.number<std::int32_t>();
  if (width < 0 || height < 0) in.fail();
  return {width, height};
}

// --- Requests ---

void write(WireWriter& out, const OpenRequest& request) {
  out.number(request.request);
  out.text(request.path);
}
void read(WireReader& in, OpenRequest& request) {
  request.request = in.number<RequestNumber>();
  request.path = in.text(kLongestPath);
}

void write(WireWriter& out, const DecodeRequest& request) {
  out.number(request.request);
  out.number(request.maxPixelSize);
}
void read(WireReader& in, DecodeRequest& request) {
  request.request = in.number<RequestNumber>();
  request.maxPixelSize = in.number<std::int32_t>();
}

void write(WireWriter& out, const MemoryLoan& loan) {
  out.number(loan.request);
  out.number(loan.buffer);
  out.number(loan.bytes);
  out.number(static_cast<std::uint32_t>(loan.gone.size()));
  for (const PixelBufferNumber buffer : loan.gone) out.number(buffer);
}
void read(WireReader& in, MemoryLoan& loan) {
  loan.request = in.number<RequestNumber>();
  loan.buffer = in.number<PixelBufferNumber>();
  loan.bytes = in.number<std::uint64_t>();
  loan.gone =
      listIn<PixelBufferNumber>(in, kMostBuffersGone, [&in] { return in.number<PixelBufferNumber>(); });
}

void write(WireWriter& out, const MeasureRequest& request) {
  out.number(request.request);
  out.number(static_cast<std::uint32_t>(request.paths.size()));
  for (const std::string& path : request.paths) out.text(path);
}
void read(WireReader& in, MeasureRequest& request) {
  request.request = in.number<RequestNumber>();
  request.paths = listIn<std::string>(in, kMostPathsAtOnce, [&in] { return in.text(kLongestPath); });
}

void write(WireWriter& /*out*/, const CloseRequest& /*request*/) {}
void read(WireReader& /*in*/, CloseRequest& /*request*/) {}

// --- Answers ---

void write(WireWriter& out, const HelloAnswer& hello) {
  out.number(hello.protocol);
  out.flag(hello.filesReadOnly);
  out.flag(hello.systemCallsFiltered);
}
void read(WireReader& in, HelloAnswer& hello) {
  hello.protocol = in.number<std::uint32_t>();
  hello.filesReadOnly = in.flag();
  hello.systemCallsFiltered = in.flag();
}

void write(WireWriter& out, const OpenAnswer& answer) {
  out.number(answer.request);
  out.flag(answer.opened);
  out.number(static_cast<std::int32_t>(answer.status));
  out.flag(answer.properties.has_value());
  if (answer.properties) writeProperties(out, *answer.properties);
}
void read(WireReader& in, OpenAnswer& answer) {
  answer.request = in.number<RequestNumber>();
  answer.opened = in.flag();
  answer.status = statusOf(in);
  if (in.flag()) answer.properties = readProperties(in);
}

void write(WireWriter& out, const MemoryWish& wish) {
  out.number(wish.request);
  out.number(wish.bytes);
}
void read(WireReader& in, MemoryWish& wish) {
  wish.request = in.number<RequestNumber>();
  wish.bytes = in.number<std::uint64_t>();
}

void write(WireWriter& out, const DecodeAnswer& answer) {
  out.number(answer.request);
  out.flag(answer.decoded);
  write(out, answer.size);
  out.number(static_cast<std::int32_t>(answer.orientation));
  out.flag(answer.opaque);
  out.number(answer.inPlanes ? 1 + static_cast<std::uint32_t>(answer.chroma) : kNoPlanes);
}
void read(WireReader& in, DecodeAnswer& answer) {
  answer.request = in.number<RequestNumber>();
  answer.decoded = in.flag();
  answer.size = sizeIn(in);
  answer.orientation = in.number<std::int32_t>();
  answer.opaque = in.flag();
  const auto planes = in.number<std::uint32_t>();
  if (planes > 1 + static_cast<std::uint32_t>(kLastChroma)) return in.fail();
  answer.inPlanes = planes != kNoPlanes;
  if (answer.inPlanes) answer.chroma = static_cast<Chroma>(planes - 1);
  const int smallestSide = answer.inPlanes ? kSmallestPlanarSide : 1;
  const auto [shorter, longer] = std::minmax(answer.size.width, answer.size.height);
  const bool drawable = shorter >= smallestSide && longer <= kLongestDecodedSide && answer.orientation >= 1 &&
                        answer.orientation <= 8 && (answer.opaque || !answer.inPlanes);
  if (answer.decoded && !drawable) in.fail();
}

void write(WireWriter& out, const MeasureAnswer& answer) {
  out.number(answer.request);
  out.number(static_cast<std::uint32_t>(answer.sizes.size()));
  for (const std::optional<SizePx>& size : answer.sizes) {
    out.flag(size.has_value());
    if (size) write(out, *size);
  }
}
void read(WireReader& in, MeasureAnswer& answer) {
  answer.request = in.number<RequestNumber>();
  answer.sizes = listIn<std::optional<SizePx>>(in, kMostPathsAtOnce, [&in]() -> std::optional<SizePx> {
    if (!in.flag()) return std::nullopt;
    return sizeIn(in);
  });
}

// --- All of them ---

template <typename Variant>
std::vector<std::byte> encodedVariant(const Variant& message) {
  WireWriter out;
  out.number(static_cast<Kind>(message.index()));
  std::visit([&out](const auto& one) { write(out, one); }, message);
  return out.take();
}

template <typename Variant, std::size_t index = 0>
std::optional<Variant> variantIn(Kind kind, WireReader& in) {
  if constexpr (index == std::variant_size_v<Variant>) {
    return std::nullopt;
  } else {
    if (kind != index) return variantIn<Variant, index + 1>(kind, in);
    std::variant_alternative_t<index, Variant> message;
    read(in, message);
    if (!in.complete()) return std::nullopt;
    return Variant(std::in_place_index<index>, std::move(message));
  }
}

}  // namespace

std::vector<std::byte> encoded(const DecoderRequest& request) {
  return encodedVariant(request);
}
std::vector<std::byte> encoded(const DecoderAnswer& answer) {
  return encodedVariant(answer);
}

std::optional<DecoderRequest> requestIn(std::span<const std::byte> message) {
  WireReader in(message);
  const auto kind = in.number<Kind>();
  return variantIn<DecoderRequest>(kind, in);
}

std::optional<DecoderAnswer> answerIn(std::span<const std::byte> message) {
  WireReader in(message);
  const auto kind = in.number<Kind>();
  return variantIn<DecoderAnswer>(kind, in);
}

}  // namespace lumivane
