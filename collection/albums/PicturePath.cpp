#include "collection/albums/PicturePath.h"

#include <climits>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "collection/PictureTypes.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr std::int64_t kSharedByOthers = 4;

// One step of a path that leads down.
bool isStepDown(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

bool leadsDown(std::string_view directory) {
  for (;;) {
    const std::size_t slash = directory.find('/');
    if (!isStepDown(directory.substr(0, slash))) return false;
    if (slash == std::string_view::npos) return true;
    directory.remove_prefix(slash + 1);
  }
}

// What the system opens and the list of pictures holds: UTF-8 text of one line.
bool isFitForList(std::string_view path) {
  return path.size() < PATH_MAX && path.find('\0') == std::string_view::npos &&
         path.find('\n') == std::string_view::npos && isValidUtf8(path);
}

std::optional<std::string> fit(std::string path) {
  if (!isFitForList(path)) return std::nullopt;
  return path;
}

}  // namespace

PackageFolders foldersOf(const std::string& package) {
  const std::string newer = package + "/scopes/cloudsharing/data";
  std::error_code error;
  const bool isNewer = std::filesystem::is_directory(newer, error);
  return {package, isNewer ? newer : package + "/resources/cloudsharing/data"};
}

std::optional<std::string> picturePath(const PackageFolders& folders, const StoredLocation& location) {
  const std::string& directory = location.directory;
  if (!isStepDown(location.fileName)) return std::nullopt;
  if (directory.starts_with('/')) {
    if (!leadsDown(std::string_view(directory).substr(1)) || !isPictureFileName(location.fileName))
      return std::nullopt;
    return fit(directory + "/" + location.fileName);
  }
  if (!leadsDown(directory)) return std::nullopt;
  const std::string& base =
      location.savedAssetType == kSharedByOthers ? folders.cloudFolder : folders.package + "/originals";
  return fit(base + "/" + directory + "/" + location.fileName);
}

}  // namespace lumivane
