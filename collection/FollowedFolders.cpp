#include "collection/FollowedFolders.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace lumivane {
namespace {

std::string withoutLinks(const std::string& path) {
  std::error_code failure;
  const std::filesystem::path canonical = std::filesystem::canonical(path, failure);
  return failure ? path : canonical.string();
}

// Whether the walk of `root` comes by `folder`: it does not go into hidden folders.
bool walksThrough(const std::string& root, const std::string& folder) {
  if (folder == root) return true;
  const std::string prefix = root.ends_with('/') ? root : root + '/';
  return folder.starts_with(prefix) && folder.find("/.", prefix.size() - 1) == std::string::npos;
}

}  // namespace

FollowedFolders::FollowedFolders(const std::string& mainDirectory) : walked_{withoutLinks(mainDirectory)} {}

PermissionAnswer FollowedFolders::answer(const std::string& folder) {
  const std::string target = withoutLinks(folder);
  const bool walked = std::any_of(walked_.begin(), walked_.end(),
                                  [&](const std::string& root) { return walksThrough(root, target); });
  if (walked) return {};
  walked_.push_back(target);
  return {kUserConfirmed, folder};
}

}  // namespace lumivane
