// Measures pictures on a few threads at once, in batches: most of the time goes into waiting for the disk.
//
// Threads: one thread adds and takes; measure() is called on the threads of this class.
// Owns:    its threads. Destruction drops what was not begun and waits for the batches that were.
// Errors:  a batch that throws is logged, and its files count as not measured.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

#include "platform/FileIndex.h"
#include "platform/Log.h"
#include "platform/PictureDimensions.h"

namespace lumivane {

class MeasuringThreads {
 public:
  static constexpr std::size_t kThreads = 4;
  static constexpr std::size_t kBatch = 32;
  static constexpr std::size_t kMostWaiting = 64;  // batches

  MeasuringThreads(PictureDimensions& dimensions, Log& log);
  MeasuringThreads(const MeasuringThreads&) = delete;
  MeasuringThreads& operator=(const MeasuringThreads&) = delete;
  ~MeasuringThreads();

  // Waits while too much is to be done already, until a stop is requested.
  void add(IndexedFile file, const std::stop_token& stop);
  // The files that have been measured since the last call, in any order, with their size where there is one.
  [[nodiscard]] std::vector<IndexedFile> take();
  // Waits until everything that was added is measured, or a stop is requested.
  void finish(const std::stop_token& stop);

 private:
  using Batch = std::vector<IndexedFile>;

  void hand(const std::stop_token& stop);
  void run(const std::stop_token& stop);
  [[nodiscard]] std::optional<Batch> nextBatch(const std::stop_token& stop);
  void measure(Batch& batch);

  // Constant after construction
  PictureDimensions& dimensions_;
  Log& log_;

  // The adding thread only
  Batch filling_;

  std::mutex mutex_;
  std::condition_variable_any workWaits_;
  std::condition_variable_any workDone_;

  // Guarded by mutex_
  std::deque<Batch> waiting_;
  std::size_t running_ = 0;
  Batch measured_;

  std::vector<std::jthread> threads_;  // last: they end before what they use
};

}  // namespace lumivane
