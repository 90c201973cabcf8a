#include "engine/ImageHistory.h"

#include <algorithm>
#include <string>
#include <utility>

#include "imaging/LongestSide.h"

namespace lumivane {
namespace {

constexpr std::int64_t kAmpleMemoryMB = 3073;   // from here on: grow
constexpr std::int64_t kUnknownMemoryMB = 512;  // what a failed query counts as

}  // namespace

void ImageHistory::storeInHistoryImage(BitmapRef image, std::shared_ptr<const PropertyDictionary> properties,
                                       ImageIndex index, std::string path) {
  imageHistoryIndex_ = 0;
  if (clearImageHistory_) {
    clear();
  } else if (newest().img && newest().index == index) {
    return;
  }
  followFreeMemory();
  freeOldestSlot();
  const auto end = history_.begin() + static_cast<std::ptrdiff_t>(current_history_size_);
  std::move_backward(history_.begin(), end - 1, end);
  history_.front() = {std::move(image), std::move(properties), index, std::move(path)};
}

bool ImageHistory::stepBack() {
  const std::size_t wanted = std::min(imageHistoryIndex_ + 1, current_history_size_ - 1);
  if (!history_[wanted].img) {
    // The step is undone from where it got to, which differs from where it began at the far end.
    imageHistoryIndex_ = wanted - 1;
    return false;
  }
  imageHistoryIndex_ = wanted;
  return true;
}

bool ImageHistory::stepForward() {
  if (imageHistoryIndex_ == 0) return false;
  --imageHistoryIndex_;
  return true;
}

std::int64_t ImageHistory::freeMemoryMB() const {
  const Result<std::int64_t> answer = memory_.freeAndReclaimableMB();
  if (answer) return answer.value();
  log_.error("host_statistics failed! (error = " + answer.error() + ")");
  return kUnknownMemoryMB;
}

void ImageHistory::clear() {
  history_.fill({});
  clearImageHistory_ = false;
  current_history_size_ = kMostEntries;
}

void ImageHistory::followFreeMemory() {
  const std::int64_t freeMB = freeMemoryMB();
  if (freeMB < kScarceMemoryMB && current_history_size_ > kFewestEntries) {
    history_[--current_history_size_] = {};
    log_.information("shrinking history, new size = " + std::to_string(current_history_size_));
  } else if (freeMB >= kAmpleMemoryMB && current_history_size_ < kMostEntries) {
    ++current_history_size_;
    log_.information("enlarging history, new size = " + std::to_string(current_history_size_));
  }
}

void ImageHistory::freeOldestSlot() {
  const std::size_t last = current_history_size_ - 1;
  if (!history_[last].img) return;
  if (history_[last].img == history_[last - 1].img) {
    log_.error("history images stored in elem " + std::to_string(last) + " and " + std::to_string(last - 1) +
               " are equal (indices = " + std::to_string(history_[last].index) + ", " +
               std::to_string(history_[last - 1].index) + ")!");
    history_[last - 1].img.reset();
    history_[last - 1].props.reset();
    return;
  }
  history_[last].img.reset();
  history_[last].props.reset();
}

}  // namespace lumivane
