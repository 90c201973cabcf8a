#include "collection/index/MeasuringThreads.h"

#include <exception>
#include <iterator>
#include <string>
#include <utility>

namespace lumivane {

MeasuringThreads::MeasuringThreads(PictureDimensions& dimensions, Log& log)
    : dimensions_(dimensions), log_(log) {
  threads_.reserve(kThreads);
  for (std::size_t i = 0; i < kThreads; ++i)
    threads_.emplace_back([this](const std::stop_token& stop) { run(stop); });
}

// All are told before one is waited for.
MeasuringThreads::~MeasuringThreads() {
  for (std::jthread& thread : threads_) thread.request_stop();
}

void MeasuringThreads::add(IndexedFile file, const std::stop_token& stop) {
  filling_.push_back(std::move(file));
  if (filling_.size() >= kBatch) hand(stop);
}

void MeasuringThreads::hand(const std::stop_token& stop) {
  if (filling_.empty()) return;
  std::unique_lock lock(mutex_);
  if (!workDone_.wait(lock, stop, [this] { return waiting_.size() < kMostWaiting; })) return;
  waiting_.push_back(std::exchange(filling_, {}));
  workWaits_.notify_one();
}

std::vector<IndexedFile> MeasuringThreads::take() {
  const std::scoped_lock lock(mutex_);
  return std::exchange(measured_, {});
}

void MeasuringThreads::finish(const std::stop_token& stop) {
  hand(stop);
  std::unique_lock lock(mutex_);
  workDone_.wait(lock, stop, [this] { return waiting_.empty() && running_ == 0; });
}

void MeasuringThreads::run(const std::stop_token& stop) {
  while (std::optional<Batch> batch = nextBatch(stop)) {
    measure(*batch);
    const std::scoped_lock lock(mutex_);
    measured_.insert(measured_.end(), std::make_move_iterator(batch->begin()),
                     std::make_move_iterator(batch->end()));
    --running_;
    workDone_.notify_one();
  }
}

std::optional<MeasuringThreads::Batch> MeasuringThreads::nextBatch(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  if (!workWaits_.wait(lock, stop, [this] { return !waiting_.empty(); }) || stop.stop_requested())
    return std::nullopt;
  Batch batch = std::move(waiting_.front());
  waiting_.pop_front();
  ++running_;
  workDone_.notify_one();
  return batch;
}

void MeasuringThreads::measure(Batch& batch) {
  try {
    std::vector<std::string> paths;
    paths.reserve(batch.size());
    for (const IndexedFile& file : batch) paths.push_back(file.path);
    const std::vector<std::optional<SizePx>> sizes = dimensions_.measure(paths);
    for (std::size_t i = 0; i < batch.size() && i < sizes.size(); ++i) batch[i].size = sizes[i];
  } catch (const std::exception& failure) {
    log_.error(std::string("Pictures could not be measured: ") + failure.what() + " !");
  }
}

}  // namespace lumivane
