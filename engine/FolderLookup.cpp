#include "engine/FolderLookup.h"

#include <utility>

namespace lumivane {
namespace {

// Not to be felt, and far more than a disk that is awake takes.
constexpr std::chrono::milliseconds kPatience{40};

}  // namespace

ResolvedBookmarks FolderLookup::resolve(const std::vector<FolderBookmark>& bookmarks, LateAnswer late) {
  open_.reset();
  if (calls_ == nullptr) return resolveBookmarks(bookmarks, log_);
  const auto answer = std::make_shared<ResolvedBookmarks>();
  auto open = std::make_shared<const LateAnswer>(std::move(late));
  const Job tell = [answer, waiting = std::weak_ptr(open)] {
    if (const auto told = waiting.lock()) (*told)(*answer);
  };
  const bool inTime = calls_->runWithin(kPatience, [answer, bookmarks, tell, &log = log_, &loop = mainLoop_] {
    *answer = resolveBookmarks(bookmarks, log);
    loop.post(tell);
  });
  if (inTime) return *answer;
  log_.error("The pictures' folders do not answer yet.");
  open_ = std::move(open);
  return recordedFolders(bookmarks);
}

}  // namespace lumivane
