#include "collection/ImageListFile.h"

#include <algorithm>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

bool isAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isUtf8Line(std::string_view line) {
  return isAscii(line) || isValidUtf8(line);
}

bool fitsInLine(std::string_view path) {
  return path.find('\n') == std::string_view::npos && isUtf8Line(path);
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
  if (!std::all_of(lines.begin(), lines.end(), isUtf8Line))
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
