// A folder of a test's own, gone with everything in it when the test ends.
#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace lumivane {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "lumivane-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder: " + pattern);
    // Through no links, so that paths found below it can be compared.
    path_ = std::filesystem::canonical(pattern).string();
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { removeFolder(AT_FDCWD, path_.c_str()); }

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  // Writes a file and makes the folders it lies in; hands back its path.
  std::string write(std::string_view name, std::string_view content) const {
    const std::string file = *this / name;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file;
  }
  std::string makeFolder(std::string_view name) const {
    const std::string folder = *this / name;
    std::filesystem::create_directories(folder);
    return folder;
  }

 private:
  // Step by step, so that no path is too long, and whatever the folders' modes.
  static void removeFolder(int parent, const char* name) {
    fchmodat(parent, name, S_IRWXU, 0);
    const int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    DIR* const entries = folder < 0 ? nullptr : fdopendir(folder);
    while (const dirent* const entry = entries == nullptr ? nullptr : readdir(entries)) {
      const std::string_view entryName = entry->d_name;
      if (entryName == "." || entryName == "..") continue;
      if (unlinkat(folder, entry->d_name, 0) != 0) removeFolder(folder, entry->d_name);
    }
    if (entries != nullptr) closedir(entries);
    unlinkat(parent, name, AT_REMOVEDIR);
  }

  std::string path_;
};

}  // namespace lumivane
