#include "platform/linux/FileUri.h"

#include <glib.h>

#include <memory>

namespace lumivane {
namespace {

struct FreeText {
  void operator()(char* text) const { g_free(text); }
};

}  // namespace

std::optional<std::string> fileUri(const std::string& path) {
  if (path.find('\0') != std::string::npos) return std::nullopt;
  const std::unique_ptr<char, FreeText> uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
  if (!uri) return std::nullopt;
  return std::string(uri.get());
}

std::optional<std::string> pathOfFileUri(const std::string& uri) {
  if (uri.find('\0') != std::string::npos) return std::nullopt;
  char* host = nullptr;
  const std::unique_ptr<char, FreeText> path(g_filename_from_uri(uri.c_str(), &host, nullptr));
  const std::unique_ptr<char, FreeText> ofHost(host);
  if (!path || host != nullptr) return std::nullopt;
  return std::string(path.get());
}

}  // namespace lumivane
