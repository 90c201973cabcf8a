// An index that answers what the test has put into it, refuses, or breaks off.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/FileIndex.h"

namespace lumivane {

class FakeFileIndex final : public FileIndex {
 public:
  // Set before the search begins
  std::string refusal;  // empty: it answers
  std::vector<IndexedFile> files;
  std::string failure;  // after all files; empty: none
  bool tellsOfAllFiles = false;
  std::function<void(const std::stop_token& stop)> duringSearch;  // after all files

  // Read after the search
  std::vector<std::string> opened;

  [[nodiscard]] Result<std::unique_ptr<IndexedFolder>> open(const std::string& folder,
                                                            std::stop_token /*stop*/) override {
    opened.push_back(folder);
    if (!refusal.empty()) return Error{refusal};
    return std::unique_ptr<IndexedFolder>(std::make_unique<Folder>(*this));
  }

 private:
  class Folder final : public IndexedFolder {
   public:
    explicit Folder(const FakeFileIndex& index) : index_(index) {}
    [[nodiscard]] std::string name() const override { return "a made index"; }
    [[nodiscard]] bool tellsOfAllFiles() const override { return index_.tellsOfAllFiles; }
    [[nodiscard]] Result<Done> search(const PicturePredicate& /*predicate*/, const Found& found,
                                      std::stop_token stop) override {
      for (const IndexedFile& file : index_.files) found(file);
      if (index_.duringSearch) index_.duringSearch(stop);
      if (!index_.failure.empty()) return Error{index_.failure};
      return Done{};
    }

   private:
    const FakeFileIndex& index_;
  };
};

}  // namespace lumivane
