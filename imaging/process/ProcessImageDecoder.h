// Opens picture files in a process of its own: nothing that a file holds can harm the show.
//
// Threads: as in ImageDecoder.h. A call waits for the other process, at most as long as DecoderLimits says.
//          A thread that has a picture open should not open another: all processes may be with threads that do so.
// Owns:    nothing; the processes outlive the decoder and its sources.
// Units:   pixels.
// Errors:  as in ImageDecoder.h; DecoderFailed where no process could say more. The log says what happened. A picture
//          that two processes did not survive is not tried again.
#pragma once

#include "imaging/ImageDecoder.h"
#include "imaging/process/DecoderProcesses.h"

namespace lumivane {

class ProcessImageDecoder final : public ImageDecoder {
 public:
  explicit ProcessImageDecoder(DecoderProcesses& processes) : processes_(processes) {}

  [[nodiscard]] std::unique_ptr<ImageSource> open(const std::string& path) override;

 private:
  DecoderProcesses& processes_;
};

}  // namespace lumivane
