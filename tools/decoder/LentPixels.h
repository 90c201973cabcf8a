// Memory for pixels that the show lends: asked for over the line, mapped once, used again and again.
//
// Threads: one at a time.
// Owns:    the mappings. What they show belongs to the show.
// Units:   bytes.
// Errors:  take() hands out an empty buffer when the show has no memory, or when one was lent for this picture already.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <vector>

#include "imaging/decode/PixelSource.h"
#include "imaging/process/DecoderProtocol.h"
#include "platform/linux/MessageSocket.h"

namespace lumivane {

class LentPixels final : public PixelSource {
 public:
  // What may stay mapped. It comes on top of what the process may take for itself.
  static constexpr std::uint64_t kMostMappedBytes = std::uint64_t{2} << 30;

  LentPixels(int socket, MessageReceiver& receiver) : socket_(socket), receiver_(receiver) {}
  ~LentPixels() override;
  LentPixels(const LentPixels&) = delete;
  LentPixels& operator=(const LentPixels&) = delete;

  // One buffer may be taken for the request that begins now.
  void begin(RequestNumber request);
  [[nodiscard]] PixelBuffer take(std::size_t bytes) override;

 private:
  struct Mapping {
    PixelBufferNumber buffer = 0;
    std::byte* data = nullptr;
    std::size_t bytes = 0;
  };
  [[nodiscard]] std::optional<MemoryLoan> ask(std::size_t bytes);
  [[nodiscard]] std::byte* placeOf(const MemoryLoan& loan, std::size_t wanted);
  [[nodiscard]] std::byte* map(const MemoryLoan& loan, const FileDescriptor& memory, std::size_t wanted);
  void forget(const std::vector<PixelBufferNumber>& buffers);
  void makeRoomFor(std::size_t bytes);

  const int socket_;
  MessageReceiver& receiver_;
  std::list<Mapping> mappings_;  // the one used last is in front
  RequestNumber request_ = 0;
  bool taken_ = true;
};

}  // namespace lumivane
