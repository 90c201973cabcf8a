#include "collection/ImageListFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

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

// Every line of the text; an empty text is one empty line.
std::vector<std::string> splitAtLineFeeds(std::string_view text) {
  std::vector<std::string> lines;
  lines.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  for (;;) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

Result<std::vector<std::string>> readLines(const Files& files, const std::string& path) {
  const Result<std::string> text = files.read(path, kLargestImageListBytes);
  if (!text) return Error{text.error()};
  std::vector<std::string> lines = splitAtLineFeeds(text.value());
  if (!isAscii(text.value()) && !std::all_of(lines.begin(), lines.end(), isUtf8))
    return Error{printable(path) + ": not UTF-8 text"};
  return lines;
}

std::vector<std::string> readList(const Files& files, const std::string& path, Log& log) {
  if (!files.exists(path)) return {};
  Result<std::vector<std::string>> lines = readLines(files, path);
  if (!lines) {
    log.error("load images failed: " + lines.error() + "!");
    return {};
  }
  if (lines.value().front().empty()) return {};
  return std::move(lines).value();
}

std::string joinedWithLineFeeds(const std::vector<std::string>& imagefiles, Log& log) {
  std::size_t bytes = 0;
  for (const std::string& path : imagefiles) bytes += path.size() + 1;
  std::string text;
  text.reserve(bytes);
  bool first = true;
  for (const std::string& path : imagefiles) {
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

}  // namespace

std::string imageListFileName(std::string_view displayFileName) {
  return "LumivaneImageList." + std::string(displayFileName) + ".plist";
}

std::vector<std::string> loadImageList(const Files& files, const std::string& imageListPath, Log& log) {
  log.information("load images from: " + printable(imageListPath));
  std::vector<std::string> imagefiles = readList(files, imageListPath, log);
  log.information("num images from config = " + std::to_string(imagefiles.size()));
  return imagefiles;
}

void saveImageList(Files& files, const std::string& imageListPath, const std::vector<std::string>& imagefiles,
                   Log& log) {
  if (imageListPath.empty()) log.error("imageListPath_ or imagefiles_ = nil!");
  log.information("saving image list (path = " + printable(imageListPath) + ")");
  const std::string text = joinedWithLineFeeds(imagefiles, log);
  const Result<Done> written = imageListPath.empty() ? Result<Done>(Error{"no path to write to"})
                                                     : files.writeAtomically(imageListPath, text);
  if (!written) log.error("saving image list failed: " + written.error() + "!");
}

}  // namespace lumivane
