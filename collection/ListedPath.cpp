#include "collection/ListedPath.h"

#include <climits>

#include "platform/PrintableText.h"

namespace lumivane {

bool fitsInList(std::string_view bytes) {
  return bytes.find('\n') == std::string_view::npos && isValidUtf8(bytes);
}

std::string_view problemOfListedPath(std::string_view folderPath, std::string_view name) {
  if (!fitsInList(name)) return "File name cannot be kept in the image list: ";
  // Reached step by step, but the system opens no path of this length.
  if (folderPath.size() + 1 + name.size() >= PATH_MAX) return "Path is too long to be opened: ";
  return {};
}

}  // namespace lumivane
