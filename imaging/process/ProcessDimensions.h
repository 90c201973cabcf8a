// Measures pictures in the decoder process.
//
// Threads: as in PictureDimensions.h.
// Owns:    nothing; the processes outlive it.
// Units:   as in PictureDimensions.h.
// Errors:  as in PictureDimensions.h. A file that a process did not survive counts as no picture, those after it are
//          measured by the next process; where there is none, or where the disk does not answer, nothing is said of them.
#pragma once

#include <span>

#include "imaging/process/DecoderProcesses.h"
#include "platform/PictureDimensions.h"

namespace lumivane {

class ProcessDimensions final : public PictureDimensions {
 public:
  explicit ProcessDimensions(DecoderProcesses& processes) : processes_(processes) {}

  [[nodiscard]] std::vector<std::optional<SizePx>> measure(const std::vector<std::string>& paths) override;

 private:
  using Sizes = std::vector<std::optional<SizePx>>;

  [[nodiscard]] Sizes measureTogether(std::span<const std::string> paths);
  [[nodiscard]] Sizes measureEach(std::span<const std::string> paths);
  [[nodiscard]] Answered<std::optional<SizePx>> measureAlone(const std::string& path);

  DecoderProcesses& processes_;
};

}  // namespace lumivane
