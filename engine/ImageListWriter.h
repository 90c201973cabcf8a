// Keeps a list that lost a picture: a million paths take longer to write than the main thread has. Of several lists for
// the same file only the newest is written.
//
// Threads: any. Whoever calls write() waits for a write that another thread has begun.
// Errors:  logged; the file then stays as it was.
#pragma once

#include <mutex>
#include <optional>
#include <string>

#include "collection/ImageList.h"
#include "platform/Files.h"
#include "platform/Log.h"

namespace lumivane {

class ImageListWriter {
 public:
  ImageListWriter(Files& files, Log& log) : files_(files), log_(log) {}

  // Takes the place of a list that still waits. Returns at once.
  void keep(std::string imageListPath, ImageList imagefiles);
  // Writes what waits. Afterwards nothing is being written.
  void write();

 private:
  struct Wanted {
    std::string imageListPath;
    ImageList imagefiles;
  };

  std::optional<Wanted> take();

  Files& files_;
  Log& log_;
  std::mutex writing_;
  std::mutex wantedMutex_;
  std::optional<Wanted> wanted_;  // guarded by wantedMutex_
};

}  // namespace lumivane
