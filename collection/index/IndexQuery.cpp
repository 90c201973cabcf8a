#include "collection/index/IndexQuery.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace lumivane {

class IndexQuery::Search {
 public:
  Search(const PictureSources& sources, PicturePredicate predicate)
      : sources_(sources),
        predicate_(std::move(predicate)),
        thread_([this](const std::stop_token& stop) { run(stop); }) {}

  void requestStop() { thread_.request_stop(); }
  [[nodiscard]] bool hasEnded() const { return ended_.load(std::memory_order_acquire); }
  [[nodiscard]] std::size_t count() const {
    const std::scoped_lock lock(mutex_);
    return paths_.size();
  }
  [[nodiscard]] std::string path(std::size_t result) const {
    const std::scoped_lock lock(mutex_);
    return paths_.at(result);
  }

 private:
  void run(const std::stop_token& stop) {
    try {
      searchPictures(
          sources_, predicate_, [this](std::string path) { add(std::move(path)); }, stop);
    } catch (const std::exception& failure) {
      sources_.log.error(std::string("The search broke off: ") + failure.what() + " !");
    }
    ended_.store(true, std::memory_order_release);
  }

  void add(std::string path) {
    const std::scoped_lock lock(mutex_);
    paths_.push_back(std::move(path));
  }

  // Constant after construction
  const PictureSources& sources_;
  const PicturePredicate predicate_;

  std::atomic<bool> ended_{false};
  mutable std::mutex mutex_;
  std::vector<std::string> paths_;  // guarded by mutex_

  std::jthread thread_;  // last: it ends before what it uses
};

IndexQuery::IndexQuery(PictureSources sources) : sources_(std::move(sources)) {}

IndexQuery::~IndexQuery() {
  stop();
}

void IndexQuery::start(const PicturePredicate& predicate) {
  stop();
  dropEnded();
  search_ = std::make_unique<Search>(sources_, predicate);
}

bool IndexQuery::isGathering() const {
  return search_ != nullptr && !search_->hasEnded();
}

std::size_t IndexQuery::resultCount() const {
  return search_ == nullptr ? 0 : search_->count();
}

std::string IndexQuery::path(std::size_t result) const {
  return search_->path(result);
}

// The thread may be in the middle of a file on a disk that does not answer: the main thread does not wait for it.
void IndexQuery::stop() {
  if (search_ == nullptr) return;
  search_->requestStop();
  abandoned_.push_back(std::move(search_));
}

void IndexQuery::dropEnded() {
  std::erase_if(abandoned_, [](const auto& search) { return search->hasEnded(); });
}

}  // namespace lumivane
