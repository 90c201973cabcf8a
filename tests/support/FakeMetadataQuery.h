// An index whose results, and the time that copying one takes, are the test's.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/MetadataQuery.h"
#include "tests/support/VirtualTime.h"

namespace lumivane {

class FakeMetadataQuery final : public MetadataQuery {
 public:
  explicit FakeMetadataQuery(VirtualClock& clock) : clock_(clock) {}

  std::vector<std::string> results;
  bool gathering = true;
  bool updatesDisabled = false;
  Nanoseconds timePerResult{0};
  std::vector<PicturePredicate> started;
  int stops = 0;

  void start(const PicturePredicate& predicate) override { started.push_back(predicate); }
  [[nodiscard]] bool isGathering() const override { return gathering; }
  void disableUpdates() override { updatesDisabled = true; }
  [[nodiscard]] std::size_t resultCount() const override { return results.size(); }
  [[nodiscard]] std::string path(std::size_t result) const override {
    clock_.advance(timePerResult);
    return results.at(result);
  }
  void stop() override { ++stops; }

 private:
  VirtualClock& clock_;
};

}  // namespace lumivane
