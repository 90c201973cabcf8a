// The record of where a display's slideshow stopped and when its pictures were last collected.
//
// Threads: main only.
// Owns:    the record in memory; its file is written whole or not at all.
// Units:   position in the picture list; wall time.
// Errors:  an unreadable file is logged and left alone, and nothing is written for the rest of the run.
// Format:  a property list (XML or binary) holding "ImageIndex" (integer) and "LastScan" (date).
#pragma once

#include <optional>
#include <string>

#include "engine/ImageOrder.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/PropertyList.h"

namespace lumivane {

struct LastRun {
  ImageIndex imageIndex = 0;
  std::optional<WallTime> lastScan;
};

class LastRunRecord {
 public:
  LastRunRecord(Files& files, Log& log) : files_(files), log_(log) {}

  // Reads the record at the path. Without a file it is begun with `fresh` and written, reading as position 0;
  // absent when the file cannot be read: the caller then keeps what it has.
  [[nodiscard]] std::optional<LastRun> loadLastRunInfo(const std::string& path, const LastRun& fresh);
  void saveLastRunInfo(const LastRun& run);

 private:
  Files& files_;
  Log& log_;
  std::string lastRunInfoPath_;
  std::optional<PropertyListDictionary> lastRunInfo_;
};

// Where list order goes on: one before the picture shown last, so that the next one is that picture. A record of 0
// wraps around and a list that has shrunk leaves the position outside: both give 0.
[[nodiscard]] ImageIndex resumePosition(ImageIndex recorded, std::size_t imageCount);

}  // namespace lumivane
