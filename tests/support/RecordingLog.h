// A log that a test can read back.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "platform/Log.h"

namespace lumivane {

class RecordingLog final : public Log {
 public:
  struct Entry {
    std::string text;
    LogLevel level = LogLevel::Information;
    bool operator==(const Entry&) const = default;
  };

  void write(std::string_view text, LogLevel level) override {
    const std::lock_guard lock(mutex_);
    entries_.push_back({std::string(text), level});
    written_.notify_all();
  }

  // Whether another thread has written such a line, which may take it a minute of real time.
  [[nodiscard]] bool waitForStarting(std::string_view beginning) const {
    std::unique_lock lock(mutex_);
    return written_.wait_for(lock, std::chrono::minutes(1), [&] {
      return std::any_of(entries_.begin(), entries_.end(),
                         [&](const Entry& entry) { return entry.text.starts_with(beginning); });
    });
  }

  [[nodiscard]] std::vector<Entry> entries() const {
    const std::lock_guard lock(mutex_);
    return entries_;
  }
  [[nodiscard]] std::size_t count(std::string_view text) const {
    const auto all = entries();
    return static_cast<std::size_t>(
        std::count_if(all.begin(), all.end(), [&](const Entry& entry) { return entry.text == text; }));
  }
  [[nodiscard]] bool has(std::string_view text, LogLevel level) const {
    const auto all = entries();
    return std::any_of(all.begin(), all.end(),
                       [&](const Entry& entry) { return entry.text == text && entry.level == level; });
  }
  [[nodiscard]] std::size_t countStartingWith(std::string_view beginning) const {
    const auto all = entries();
    return static_cast<std::size_t>(std::count_if(
        all.begin(), all.end(), [&](const Entry& entry) { return entry.text.starts_with(beginning); }));
  }
  void clear() {
    const std::lock_guard lock(mutex_);
    entries_.clear();
  }

 private:
  mutable std::mutex mutex_;
  mutable std::condition_variable written_;
  std::vector<Entry> entries_;  // guarded by mutex_
};

}  // namespace lumivane
