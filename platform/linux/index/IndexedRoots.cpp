#include "platform/linux/index/IndexedRoots.h"

#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/linux/index/GioHandles.h"

namespace lumivane {
namespace {

constexpr const char* kSchema = "org.freedesktop.Tracker3.Miner.Files";
constexpr const char* kKey = "index-recursive-directories";

constexpr std::array<std::pair<std::string_view, GUserDirectory>, 8> kUserFolders = {
    {{"DESKTOP", G_USER_DIRECTORY_DESKTOP},
     {"DOCUMENTS", G_USER_DIRECTORY_DOCUMENTS},
     {"DOWNLOAD", G_USER_DIRECTORY_DOWNLOAD},
     {"MUSIC", G_USER_DIRECTORY_MUSIC},
     {"PICTURES", G_USER_DIRECTORY_PICTURES},
     {"PUBLIC_SHARE", G_USER_DIRECTORY_PUBLIC_SHARE},
     {"TEMPLATES", G_USER_DIRECTORY_TEMPLATES},
     {"VIDEOS", G_USER_DIRECTORY_VIDEOS}}};

std::string userFolderNamed(std::string_view name) {
  for (const auto& [known, folder] : kUserFolders) {
    const char* path = known == name ? g_get_user_special_dir(folder) : nullptr;
    if (path != nullptr) return path;
  }
  return {};
}

std::string withoutSlashes(std::string path) {
  while (path.ends_with('/')) path.pop_back();
  return path;
}

// Asked for first: settings without a schema end the program.
bool schemaHasKey() {
  GSettingsSchemaSource* const source = g_settings_schema_source_get_default();
  if (source == nullptr) return false;
  GSettingsSchema* const schema = g_settings_schema_source_lookup(source, kSchema, TRUE);
  if (schema == nullptr) return false;
  const bool has = g_settings_schema_has_key(schema, kKey) == TRUE;
  g_settings_schema_unref(schema);
  return has;
}

}  // namespace

std::optional<std::vector<std::string>> indexedRootsOfUser() {
  if (!schemaHasKey()) return std::nullopt;
  const GioRef<GSettings> settings(g_settings_new(kSchema));
  const std::unique_ptr<char*, decltype(&g_strfreev)> entries(g_settings_get_strv(settings.get(), kKey),
                                                              g_strfreev);
  std::vector<std::string> roots;
  for (char** entry = entries.get(); entry != nullptr && *entry != nullptr; ++entry)
    roots.push_back(expandedRoot(*entry, g_get_home_dir(), userFolderNamed));
  std::erase(roots, std::string());
  return roots;
}

std::string expandedRoot(std::string_view entry, const std::string& home,
                         const std::function<std::string(std::string_view name)>& userFolder) {
  if (entry.starts_with('&')) {
    std::string folder = withoutSlashes(userFolder(entry.substr(1)));
    return folder == withoutSlashes(home) ? std::string()
                                          : folder;  // the desktop's way to say that there is none
  }
  for (const std::string_view word : {"$HOME", "~"}) {
    const bool begins = entry.starts_with(word) && (entry.size() == word.size() || entry[word.size()] == '/');
    if (begins) return withoutSlashes(home + std::string(entry.substr(word.size())));
  }
  return entry.starts_with('/') ? withoutSlashes(std::string(entry)) : std::string();
}

bool isBelowRoots(const std::string& folder, const std::vector<std::string>& roots) {
  return std::ranges::any_of(roots, [&](const std::string& root) {
    return folder.starts_with(root) && (folder.size() == root.size() || folder[root.size()] == '/');
  });
}

}  // namespace lumivane
