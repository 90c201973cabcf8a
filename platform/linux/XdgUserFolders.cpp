#include "platform/linux/XdgUserFolders.h"

#include <utility>

namespace lumivane {
namespace {

constexpr std::size_t kMaxUserDirsBytes = 64 * 1024;
constexpr std::string_view kPicturesVariable = "XDG_PICTURES_DIR";
constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The base directory specification has relative paths ignored.
std::string absoluteOrEmpty(std::string path) {
  return path.starts_with('/') ? std::move(path) : std::string();
}

std::string baseFolder(const Environment& environment, std::string_view variable,
                       std::string_view underHome) {
  if (std::string set = absoluteOrEmpty(valueOf(environment, variable)); !set.empty()) return set;
  const std::string home = absoluteOrEmpty(valueOf(environment, "HOME"));
  return home.empty() ? std::string() : home + std::string(underHome);
}

// The text between double quotes, backslashes taken away, as a shell would read it.
std::optional<std::string> unquoted(std::string_view text) {
  if (!text.starts_with('"')) return std::nullopt;
  std::string result;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') return result;
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    result += text[i];
  }
  return std::nullopt;
}

std::string withoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

// "NAME=value" with that name: the value.
std::optional<std::string_view> assignedIn(std::string_view line, std::string_view name) {
  line = trimmed(line);
  if (!line.starts_with(name)) return std::nullopt;
  line = trimmed(line.substr(name.size()));
  if (!line.starts_with('=')) return std::nullopt;
  return trimmed(line.substr(1));
}

}  // namespace

std::optional<std::string> picturesFolderNamedIn(std::string_view userDirs, const std::string& home) {
  std::optional<std::string> folder;
  while (!userDirs.empty()) {
    const std::size_t end = userDirs.find('\n');
    const auto assigned = assignedIn(userDirs.substr(0, end), kPicturesVariable);
    userDirs.remove_prefix(end == std::string_view::npos ? userDirs.size() : end + 1);
    if (!assigned) continue;
    std::optional<std::string> value = unquoted(*assigned);
    if (!value) continue;
    if (value->starts_with("$HOME") && (value->size() == 5 || (*value)[5] == '/')) value->replace(0, 5, home);
    if (value->starts_with('/')) folder = withoutTrailingSlashes(std::move(*value));  // the last one counts
  }
  if (folder == withoutTrailingSlashes(home)) return std::nullopt;
  return folder;
}

UserFolders xdgUserFolders(const Environment& environment, const Files& files) {
  UserFolders folders;
  const std::string config = baseFolder(environment, "XDG_CONFIG_HOME", "/.config");
  if (!config.empty()) folders.config = config + "/lumivane";
  if (const std::string data = baseFolder(environment, "XDG_DATA_HOME", "/.local/share"); !data.empty()) {
    folders.data = data + "/lumivane";
  }
  if (const std::string cache = baseFolder(environment, "XDG_CACHE_HOME", "/.cache"); !cache.empty()) {
    folders.cache = cache + "/lumivane";
  }
  folders.state = baseFolder(environment, "XDG_STATE_HOME", "/.local/state");
  const std::string home = absoluteOrEmpty(valueOf(environment, "HOME"));
  if (home.empty()) return folders;
  folders.home = withoutTrailingSlashes(home);
  folders.pictures = folders.home + "/Pictures";
  const Result<std::string> userDirs = files.read(config + "/user-dirs.dirs", kMaxUserDirsBytes);
  if (!userDirs) return folders;
  if (auto named = picturesFolderNamedIn(userDirs.value(), home)) folders.pictures = std::move(*named);
  return folders;
}

}  // namespace lumivane
