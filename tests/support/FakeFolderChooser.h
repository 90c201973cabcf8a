// A folder dialog that keeps its questions until the test answers them.
#pragma once

#include <utility>
#include <vector>

#include "platform/FolderChooser.h"

namespace lumivane {

class FakeFolderChooser final : public FolderChooser {
 public:
  struct Open {
    FolderQuestion question;
    Completion completion;
  };
  std::vector<Open> open;
  std::vector<FolderQuestion> asked;

  void choose(const FolderQuestion& question, Completion completion) override {
    asked.push_back(question);
    open.push_back({question, std::move(completion)});
  }
  // Answers the oldest open question. Requires: there is one.
  void answer(const FolderAnswer& answer) {
    Open first = std::move(open.front());
    open.erase(open.begin());
    first.completion(answer);
  }
};

}  // namespace lumivane
