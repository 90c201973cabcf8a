// The desktop's index of file metadata: Tracker, under its newer name LocalSearch.
//
// Threads: as in FileIndex.h.
// Units:   as in FileIndex.h.
// Errors:  the index refuses wherever its answer would not be whole: no session bus, no service, one that hangs or is
//          still at work, a folder it was not set to take in or has not come to yet.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/FileIndex.h"

namespace lumivane {

class TrackerIndex final : public FileIndex {
 public:
  struct Limits {
    std::chrono::milliseconds perQuestion{2000};
    std::chrono::milliseconds toSettle{4000};
    std::chrono::milliseconds betweenLooks{300};
    std::chrono::milliseconds perRow{10'000};  // the first row has to wait for all of the index's work
  };
  // The folders that the index takes in with all below them; absent: nobody knows.
  using IndexedRoots = std::function<std::optional<std::vector<std::string>>()>;

  // An empty address: there is no session bus.
  TrackerIndex(std::string busAddress, IndexedRoots roots);
  TrackerIndex(std::string busAddress, IndexedRoots roots, Limits limits);

  [[nodiscard]] Result<std::unique_ptr<IndexedFolder>> open(const std::string& folder,
                                                            std::stop_token stop) override;

 private:
  const std::string busAddress_;
  const IndexedRoots roots_;
  const Limits limits_;
};

}  // namespace lumivane
