// One conversation with one decoder process: asks, waits within limits, and believes nothing that it has not checked.
//
// Threads: one at a time.
// Owns:    the process; destruction ends it.
// Units:   pixels; limits in media time.
// Errors:  a trouble instead of an answer. After one the process is of no more use.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "imaging/process/DecoderProtocol.h"
#include "imaging/process/SharedPixelPool.h"
#include "platform/ChildProgram.h"
#include "platform/Clock.h"

namespace lumivane {

enum class DecoderTrouble {
  Ended,     // it ended by itself, or was ended
  TooSlow,   // the time was up
  Nonsense,  // it answered what makes no sense, or what nobody asked for
};

// An answer, or why there is none.
template <typename Answer>
using Answered = std::variant<Answer, DecoderTrouble>;

class DecoderConnection {
 public:
  DecoderConnection(std::unique_ptr<ChildProgram> child, std::shared_ptr<SharedPixelPool> pool,
                    const Clock& clock);

  // Waits until the process is ready. Once, and before everything else.
  [[nodiscard]] Answered<HelloAnswer> hello(Nanoseconds limit);
  // Nothing came that nobody asked for, and the line is there.
  [[nodiscard]] bool isQuietAndThere();

  [[nodiscard]] Answered<OpenAnswer> open(const std::string& path, Nanoseconds limit);
  // Of the picture opened last; nullptr when it cannot be decoded.
  [[nodiscard]] Answered<BitmapRef> decode(int maxPixelSize, Nanoseconds limit);
  // Lets go of the file.
  void close();
  // As many answers as paths.
  [[nodiscard]] Answered<MeasureAnswer> measure(std::vector<std::string> paths, Nanoseconds limit);

 private:
  class Deadline;

  [[nodiscard]] Answered<DecoderAnswer> next(const Deadline& deadline);
  template <typename Answer>
  [[nodiscard]] Answered<Answer> answerTo(const DecoderRequest& request, Nanoseconds limit);
  [[nodiscard]] Answered<DecoderAnswer> answerToDecode(DecodeRequest request, const Deadline& deadline,
                                                       std::optional<SharedPixels>& lent);
  // False when the line is broken.
  [[nodiscard]] bool lend(const MemoryWish& wish, std::optional<SharedPixels>& lent);

  const std::unique_ptr<ChildProgram> child_;
  const std::shared_ptr<SharedPixelPool> pool_;
  const Clock& clock_;
  RequestNumber lastRequest_ = 0;
  std::set<PixelBufferNumber> seen_;  // by the process
  std::vector<std::byte> message_;
};

}  // namespace lumivane
