#include "engine/DroppedFile.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace lumivane {

std::string folderOfDroppedFile(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) return {};
  return std::filesystem::is_directory(status) ? path : std::filesystem::path(path).parent_path().string();
}

void askFolderOfDroppedFile(BoundedCalls* calls, MainLoop& mainLoop, const std::string& path,
                            std::function<void(const std::string& folder)> completion) {
  const Job ask = [&mainLoop, path, completion = std::move(completion)] {
    mainLoop.post([folder = folderOfDroppedFile(path), completion] { completion(folder); });
  };
  if (calls == nullptr) return ask();
  (void)calls->runWithin(Nanoseconds{0}, ask);
}

}  // namespace lumivane
