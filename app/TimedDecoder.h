// Has another decoder open pictures, and tells how long it took over each.
//
// Threads: as in ImageDecoder.h; the listener is called on the thread that decodes.
// Owns:    nothing of the other decoder.
// Units:   time of the clock, from the question for a picture until its pixels were there: what opening it took and what
//          decoding it took, but not what was done in between.
// Errors:  as in ImageDecoder.h. A picture that was opened and could not be decoded is told of, too; one that could not be
//          opened, or was not wanted for what its header says, is not.
#pragma once

#include <functional>

#include "imaging/ImageDecoder.h"
#include "platform/Clock.h"

namespace lumivane {

using DecodeListener = std::function<void(Nanoseconds time)>;

class TimedDecoder final : public ImageDecoder {
 public:
  // The other decoder, the clock and what the listener uses must outlive this and its sources.
  TimedDecoder(ImageDecoder& decoder, const Clock& clock, DecodeListener decoded)
      : decoder_(decoder), clock_(clock), decoded_(std::move(decoded)) {}

  [[nodiscard]] std::unique_ptr<ImageSource> open(const std::string& path) override;

 private:
  ImageDecoder& decoder_;
  const Clock& clock_;
  const DecodeListener decoded_;
};

}  // namespace lumivane
