// The process that opens pictures, as the commands that look at pictures use it.
//
// Threads: as in ImageDecoder.h and PictureDimensions.h.
// Owns:    the process, which is started with the first picture and ends with this.
// Errors:  as in ProcessImageDecoder.h.
#pragma once

#include "imaging/process/ProcessDimensions.h"
#include "imaging/process/ProcessImageDecoder.h"
#include "platform/linux/DecoderProgram.h"
#include "platform/linux/ProgramFolder.h"
#include "platform/linux/SealedMemory.h"
#include "platform/linux/SystemClock.h"
#include "tools/Tool.h"

namespace lumivane {

class PictureProcess {
 public:
  explicit PictureProcess(const Tool& tool)
      : programs_(decoderProgram(programFolder(), tool.environment)),
        processes_(programs_, memories_, tool.clock, tool.log, DecoderLimits{}, holdUp) {}

  [[nodiscard]] ImageDecoder& decoder() { return decoder_; }
  [[nodiscard]] PictureDimensions& dimensions() { return dimensions_; }

 private:
  SpawnedPrograms programs_;
  SealedMemories memories_;
  DecoderProcesses processes_;
  ProcessImageDecoder decoder_{processes_};
  ProcessDimensions dimensions_{processes_};
};

}  // namespace lumivane
