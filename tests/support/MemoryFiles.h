// Files that live in the test's memory and fail when the test wants them to. The fields are for the test alone, while no
// other thread is at work.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/Files.h"

namespace lumivane {

class MemoryFiles final : public Files {
 public:
  std::map<std::string, std::string> content;
  std::set<std::string> unreadable;  // there, but cannot be read
  std::set<std::string> unwritable;
  std::set<std::string> unremovable;
  std::set<std::string> undated;             // there, but its time cannot be told
  std::map<std::string, WallTime> modified;  // the epoch for any other path
  int writes = 0;
  std::function<void(const std::string& path)> touched;  // told of every call
  // Asked before every call that changes something: why it fails this time.
  std::function<std::optional<std::string>(const std::string& path)> fault;

  [[nodiscard]] bool exists(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    tell(path);
    return isThere(path);
  }
  [[nodiscard]] Result<std::string> read(const std::string& path, std::size_t maxBytes) const override {
    const std::lock_guard lock(mutex_);
    tell(path);
    const auto found = content.find(path);
    if (unreadable.contains(path)) return Error{path + ": Permission denied"};
    if (found == content.end()) return Error{path + ": No such file or directory"};
    if (found->second.size() > maxBytes) return Error{path + ": File too large"};
    return found->second;
  }
  [[nodiscard]] Result<Done> writeAtomically(const std::string& path, std::string_view bytes) override {
    const std::lock_guard lock(mutex_);
    tell(path);
    if (const auto reason = faultAt(path)) return Error{path + ": " + *reason};
    if (unwritable.contains(path)) return Error{path + ": No space left on device"};
    ++writes;
    content[path] = std::string(bytes);
    return Done{};
  }
  [[nodiscard]] Result<Done> rename(const std::string& from, const std::string& to) override {
    const std::lock_guard lock(mutex_);
    tell(from);
    if (const auto reason = faultAt(from)) return Error{from + ": " + *reason};
    const auto found = content.find(from);
    if (found == content.end()) return Error{from + ": No such file or directory"};
    content[to] = found->second;
    content.erase(from);
    return Done{};
  }
  [[nodiscard]] Result<WallTime> modificationTime(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    tell(path);
    if (!isThere(path) || undated.contains(path)) return Error{path + ": No such file or directory"};
    const auto found = modified.find(path);
    return found == modified.end() ? WallTime{} : found->second;
  }
  [[nodiscard]] Result<Done> remove(const std::string& path) override {
    const std::lock_guard lock(mutex_);
    tell(path);
    if (const auto reason = faultAt(path)) return Error{path + ": " + *reason};
    if (unremovable.contains(path)) return Error{path + ": Operation not permitted"};
    if (content.erase(path) + unreadable.erase(path) == 0) return Error{path + ": No such file or directory"};
    return Done{};
  }
  [[nodiscard]] Result<Done> probeForUpdating(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    tell(path);
    if (unreadable.contains(path)) return Error{path + ": Permission denied"};
    if (!content.contains(path)) return Error{path + ": No such file or directory"};
    return Done{};
  }

 private:
  mutable std::mutex mutex_;  // views look at files on their queues, too

  void tell(const std::string& path) const {
    if (touched) touched(path);
  }
  [[nodiscard]] std::optional<std::string> faultAt(const std::string& path) const {
    return fault ? fault(path) : std::nullopt;
  }
  [[nodiscard]] bool isThere(const std::string& path) const {
    return content.contains(path) || unreadable.contains(path);
  }
};

}  // namespace lumivane
