#include "collection/ImageListFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

// Eight bytes at a time: a list of a million pictures is read while somebody waits for the first.
bool isAscii(std::string_view bytes) {
  std::uint64_t seen = 0;
  for (; bytes.size() >= sizeof seen; bytes.remove_prefix(sizeof seen)) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes.data(), sizeof eight);
    seen |= eight;
  }
  for (const char c : bytes) seen |= static_cast<unsigned char>(c);
  return (seen & 0x8080808080808080) == 0;
}

bool isUtf8(std::string_view bytes) {
  return isAscii(bytes) || isValidUtf8(bytes);
}

bool fitsInLine(std::string_view path) {
  return path.find('\n') == std::string_view::npos && isUtf8(path);
}

Result<ImageList> readLines(const Files& files, const std::string& path) {
  Result<std::string> text = files.read(path, kLargestImageListBytes);
  if (!text) return Error{text.error()};
  if (!isUtf8(text.value())) return Error{printable(path) + ": not UTF-8 text"};
  return ImageList::ofLines(std::move(text).value());
}

ImageList readList(const Files& files, const std::string& path, Log& log) {
  if (!files.exists(path)) return {};
  Result<ImageList> lines = readLines(files, path);
  if (!lines) {
    log.error("load images failed: " + lines.error() + "!");
    return {};
  }
  if (lines.value().front().empty()) return {};
  return std::move(lines).value();
}

std::size_t lineFeeds(std::string_view text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

// The list's own bytes where they can be the file's: no line feed in any path, and all of it UTF-8.
std::optional<std::string_view> readyText(const ImageList& imagefiles) {
  const std::optional<std::string_view> text = imagefiles.joinedText();
  const bool fits =
      text && lineFeeds(*text) + 1 == std::max<std::size_t>(imagefiles.size(), 1) && isUtf8(*text);
  return fits ? text : std::nullopt;
}

std::string joinedWithLineFeeds(const ImageList& imagefiles, Log& log) {
  std::size_t bytes = 0;
  for (const std::string_view path : imagefiles) bytes += path.size() + 1;
  std::string text;
  text.reserve(bytes);
  bool first = true;
  for (const std::string_view path : imagefiles) {
    if (!fitsInLine(path)) {
      log.error("File name cannot be kept in the image list: " + printable(path) + " !");
      continue;
    }
    if (!first) text += '\n';
    text += path;
    first = false;
  }
  return text;
}

Result<Done> writeList(Files& files, const std::string& path, const ImageList& imagefiles, Log& log) {
  if (path.empty()) return Error{"no path to write to"};
  if (const auto text = readyText(imagefiles)) return files.writeAtomically(path, *text);
  return files.writeAtomically(path, joinedWithLineFeeds(imagefiles, log));
}

}  // namespace

std::string imageListFileName(std::string_view displayFileName) {
  return "LumivaneImageList." + std::string(displayFileName) + ".plist";
}

ImageList loadImageList(const Files& files, const std::string& imageListPath, Log& log) {
  log.information("load images from: " + printable(imageListPath));
  ImageList imagefiles = readList(files, imageListPath, log);
  log.information("num images from config = " + std::to_string(imagefiles.size()));
  return imagefiles;
}

void saveImageList(Files& files, const std::string& imageListPath, const ImageList& imagefiles, Log& log) {
  if (imageListPath.empty()) log.error("imageListPath_ or imagefiles_ = nil!");
  log.information("saving image list (path = " + printable(imageListPath) + ")");
  const Result<Done> written = writeList(files, imageListPath, imagefiles, log);
  if (!written) log.error("saving image list failed: " + written.error() + "!");
}

}  // namespace lumivane
