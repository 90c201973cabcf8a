// The last pictures that were shown, decoded and newest first, so that stepping back costs nothing.
//
// Threads: main only.
// Owns:    its pictures, which live until they fall out at the far end or the history is cleared.
// Units:   free memory in MiB; steps count from 0 = the newest picture.
// Errors:  a failed memory query counts as scarce memory and is logged.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "compositor/model/Bitmap.h"
#include "engine/ImageOrder.h"
#include "imaging/PropertyDictionary.h"
#include "platform/FreeMemory.h"
#include "platform/Log.h"

namespace lumivane {

struct HistoryEntry {
  BitmapRef img;  // nullptr = nothing stored here
  std::shared_ptr<const PropertyDictionary> props;
  ImageIndex index = 0;  // its position in the list when it was stored
  std::string path;      // the file that it was read from
};

class ImageHistory {
 public:
  static constexpr std::size_t kMostEntries = 12;
  static constexpr std::size_t kFewestEntries = 3;

  ImageHistory(const FreeMemory& memory, Log& log) : memory_(memory), log_(log) {}

  // Puts a picture in front, unless the newest one has the same index, and lets the size follow the free memory
  // by at most one entry. Sets the step back to the newest.
  void storeInHistoryImage(BitmapRef image, std::shared_ptr<const PropertyDictionary> properties,
                           ImageIndex index, std::string path = {});
  // The entry that the user has stepped to.
  [[nodiscard]] const HistoryEntry& loadFromHistoryImage() const { return history_[imageHistoryIndex_]; }
  [[nodiscard]] const HistoryEntry& newest() const { return history_.front(); }

  // One step towards older pictures; false when there is none (the step is then not made).
  bool stepBack();
  // One step towards newer pictures; false at the newest.
  bool stepForward();
  void returnToNewest() { imageHistoryIndex_ = 0; }

  // Empties everything at the next store, because a new list makes the old positions meaningless.
  void clearAtNextStore() { clearImageHistory_ = true; }

  // Free plus reclaimable memory, 512 when it cannot be told.
  [[nodiscard]] std::int64_t freeMemoryMB() const;

  [[nodiscard]] std::size_t size() const { return current_history_size_; }
  [[nodiscard]] std::size_t stepsBack() const { return imageHistoryIndex_; }
  [[nodiscard]] const std::array<HistoryEntry, kMostEntries>& entries() const { return history_; }

 private:
  void clear();
  void followFreeMemory();
  void freeOldestSlot();

  const FreeMemory& memory_;
  Log& log_;
  std::array<HistoryEntry, kMostEntries> history_;
  std::size_t current_history_size_ = kMostEntries;
  std::size_t imageHistoryIndex_ = 0;
  bool clearImageHistory_ = false;
};

}  // namespace lumivane
