#include "collection/albums/PhotoLibraryPackage.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "collection/FileNameOrder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPackageSuffix = ".photoslibrary";

bool isPackageName(std::string_view name) {
  return name.size() > kPackageSuffix.size() && name.ends_with(kPackageSuffix) && name.front() != '.';
}

std::string withoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

std::string namedLibrary(const std::string& named) {
  std::error_code error;
  const fs::path absolute = fs::absolute(named, error);
  std::string path = withoutTrailingSlashes(error ? named : absolute.string());
  if (path.ends_with(kPackageSuffix)) return path;
  const std::string target = fs::canonical(path, error).string();
  return !error && target.ends_with(kPackageSuffix) ? target : path;
}

}  // namespace

std::optional<std::string> findPhotoLibrary(const std::string& named, const std::string& picturesFolder) {
  if (!named.empty()) return namedLibrary(named);
  if (picturesFolder.empty()) return std::nullopt;
  std::vector<std::string> packages;
  std::error_code error;
  fs::directory_iterator entry(picturesFolder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code unknown;  // a dead link is no folder
    if (isPackageName(entry->path().filename().string()) && entry->is_directory(unknown)) {
      packages.push_back(entry->path().string());
    }
  }
  if (packages.empty()) return std::nullopt;
  sortByFileName(packages, "");
  return packages.front();
}

}  // namespace lumivane
