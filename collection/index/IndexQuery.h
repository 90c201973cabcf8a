// The search in an index as the slideshow asks for it: runs on a thread of its own, and is looked at from the main one.
//
// Threads: main only. Each search has a thread; one that was given up ends by itself and is waited for at the latest
//          when this object goes.
// Owns:    the searches.
// Units:   as in MetadataQuery.h.
// Errors:  as in PictureSearch.h.
#pragma once

#include <memory>
#include <vector>

#include "collection/index/PictureSearch.h"
#include "platform/MetadataQuery.h"

namespace lumivane {

class IndexQuery final : public MetadataQuery {
 public:
  explicit IndexQuery(PictureSources sources);
  IndexQuery(const IndexQuery&) = delete;
  IndexQuery& operator=(const IndexQuery&) = delete;
  ~IndexQuery() override;

  void start(const PicturePredicate& predicate) override;
  [[nodiscard]] bool isGathering() const override;
  // Nothing is ever added after the gathering.
  void disableUpdates() override {}
  [[nodiscard]] std::size_t resultCount() const override;
  [[nodiscard]] std::string path(std::size_t result) const override;
  void stop() override;

 private:
  class Search;

  void dropEnded();

  const PictureSources sources_;
  std::unique_ptr<Search> search_;                  // nullptr: none is wanted
  std::vector<std::unique_ptr<Search>> abandoned_;  // told to stop, may still run
};

}  // namespace lumivane
