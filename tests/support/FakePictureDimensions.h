// Pictures whose sizes are the test's, and a record of which were asked for.
#pragma once

#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/PictureDimensions.h"

namespace lumivane {

class FakePictureDimensions final : public PictureDimensions {
 public:
  // Set before the search begins
  std::map<std::string, SizePx> sizes;  // by path
  std::optional<SizePx> other;          // of every other path; absent: it cannot be opened
  std::set<std::string> thrownAt;

  [[nodiscard]] std::vector<std::optional<SizePx>> measure(const std::vector<std::string>& paths) override {
    std::vector<std::optional<SizePx>> result;
    for (const std::string& path : paths) {
      {
        const std::scoped_lock lock(mutex_);
        measured_.insert(path);
      }
      if (thrownAt.contains(path)) throw std::runtime_error("a fault");
      const auto found = sizes.find(path);
      result.push_back(found == sizes.end() ? other : found->second);
    }
    return result;
  }

  // Every path once for each time that it was measured.
  [[nodiscard]] std::multiset<std::string> measured() const {
    const std::scoped_lock lock(mutex_);
    return measured_;
  }
  void forgetMeasured() {
    const std::scoped_lock lock(mutex_);
    measured_.clear();
  }

 private:
  mutable std::mutex mutex_;
  std::multiset<std::string> measured_;  // guarded by mutex_
};

}  // namespace lumivane
