#include "platform/linux/index/IndexRow.h"

#include <climits>
#include <string_view>

#include "platform/PrintableText.h"
#include "platform/linux/FileUri.h"

namespace lumivane {
namespace {

// Longer than any picture that is ever shown; what is beyond is better asked of the file itself.
constexpr std::int64_t kLongestSide = 1'000'000;
constexpr std::size_t kLongestUri = 3 * PATH_MAX + 64;

// No part is empty, hidden, or a way back up.
bool partsAreVisible(std::string_view path) {
  while (!path.empty()) {
    const std::size_t end = path.find('/');
    if (end == 0 || path.front() == '.') return false;
    if (end == std::string_view::npos) return true;
    path.remove_prefix(end + 1);
  }
  return false;  // a slash at its end
}

bool isSide(std::int64_t side) {
  return side > 0 && side <= kLongestSide;
}

}  // namespace

std::optional<IndexedFile> checkedRow(const IndexRow& row, const std::string& folder) {
  if (row.bytes < 0 || row.uri.size() > kLongestUri) return std::nullopt;
  std::optional<std::string> path = pathOfFileUri(row.uri);
  if (!path || path->size() >= PATH_MAX || !path->starts_with(folder) || path->size() <= folder.size() ||
      (*path)[folder.size()] != '/') {
    return std::nullopt;
  }
  if (!partsAreVisible(std::string_view(*path).substr(folder.size() + 1))) return std::nullopt;
  if (!isValidUtf8(*path) || path->find('\n') != std::string::npos) return std::nullopt;
  IndexedFile file{std::move(*path), {static_cast<std::uint64_t>(row.bytes), 0}, std::nullopt};
  if (isSide(row.width) && isSide(row.height))
    file.size = SizePx{static_cast<int>(row.width), static_cast<int>(row.height)};
  return file;
}

}  // namespace lumivane
