#include "collection/index/DimensionCache.h"

#include <climits>
#include <cstdint>
#include <limits>
#include <utility>

namespace lumivane {
namespace {

// The number at the end changes with the format, and when files could be measured that could not before.
constexpr std::string_view kMagic = "LumivaneDimensions1\n";
constexpr std::size_t kChecksumBytes = 8;
constexpr std::size_t kLeastEntryBytes = 2 + 8 + 8 + 4 + 4;

// FNV-1a: against damage, not against forgers, who could compute any other as well.
std::uint64_t checksumOf(std::string_view bytes) {
  std::uint64_t sum = 14695981039346656037ULL;
  for (const char byte : bytes) sum = (sum ^ static_cast<unsigned char>(byte)) * 1099511628211ULL;
  return sum;
}

void append(std::string& out, std::uint64_t number, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(number >> (8 * i) & 0xFF);
}

void appendText(std::string& out, std::string_view text) {
  append(out, text.size(), 2);
  out += text;
}

struct SplitPath {
  std::string_view folder;
  std::string_view name;
};

SplitPath split(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return {path.substr(0, slash), path.substr(slash + 1)};
}

bool isFolderPath(std::string_view path) {
  return (path.empty() || (path.front() == '/' && path.back() != '/')) &&
         path.find('\0') == std::string_view::npos;
}

bool isName(std::string_view name) {
  return !name.empty() && name.find('/') == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

bool isSize(std::uint64_t width, std::uint64_t height) {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
  return width <= kMost && height <= kMost && (width == 0) == (height == 0);
}

}  // namespace

// Takes numbers and texts from the front; after the end everything is empty, and ok() tells.
class DimensionCache::Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  std::string_view take(std::size_t count) {
    if (count > bytes_.size()) {
      ok_ = false;
      count = bytes_.size();
    }
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return taken;
  }
  std::uint64_t number(std::size_t bytes) {
    std::uint64_t value = 0;
    int shift = 0;
    for (const char byte : take(bytes)) {
      value |= static_cast<std::uint64_t>(static_cast<unsigned char>(byte)) << shift;
      shift += 8;
    }
    return value;
  }
  std::string_view text() { return take(static_cast<std::size_t>(number(2))); }

  [[nodiscard]] bool ok() const { return ok_; }
  [[nodiscard]] std::size_t left() const { return bytes_.size(); }

 private:
  std::string_view bytes_;
  bool ok_ = true;
};

Result<DimensionCache> DimensionCache::parsed(std::string_view content) {
  Reader reader(content);
  if (reader.take(kMagic.size()) != kMagic) return Error{"it was written by something else"};
  const std::uint64_t checksum = reader.number(kChecksumBytes);
  if (!reader.ok() || checksum != checksumOf(content.substr(kMagic.size() + kChecksumBytes)))
    return Error{"it is damaged"};
  DimensionCache cache;
  while (reader.left() > 0) {
    if (!cache.readFolder(reader)) return Error{"it makes no sense"};
  }
  return cache;
}

bool DimensionCache::readFolder(Reader& reader) {
  const std::string_view path = reader.text();
  const std::uint64_t count = reader.number(4);
  if (!reader.ok() || !isFolderPath(path) || count > reader.left() / kLeastEntryBytes) return false;
  if (size_ + count > kMostEntries) return false;
  Folder& folder = folders_[std::string(path)];
  folder.reserve(folder.size() + static_cast<std::size_t>(count));
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::string_view name = reader.text();
    Entry entry;
    entry.stamp.bytes = reader.number(8);
    entry.stamp.modified = static_cast<std::int64_t>(reader.number(8));
    const std::uint64_t width = reader.number(4);
    const std::uint64_t height = reader.number(4);
    if (!reader.ok() || !isName(name) || !isSize(width, height)) return false;
    entry.size = {static_cast<int>(width), static_cast<int>(height)};
    if (folder.try_emplace(std::string(name), entry).second) ++size_;
  }
  return true;
}

std::string DimensionCache::content() const {
  std::string entries;
  std::size_t room = kMostEntries;
  for (const bool seen : {true, false}) writeEntries(entries, seen, room);
  std::string result(kMagic);
  append(result, checksumOf(entries), kChecksumBytes);
  return result += entries;
}

void DimensionCache::writeEntries(std::string& out, bool seen, std::size_t& room) const {
  for (const auto& [path, folder] : folders_) {
    const std::size_t start = out.size();
    appendText(out, path);
    const std::size_t countAt = out.size();
    append(out, 0, 4);
    std::uint32_t count = 0;
    for (const auto& [name, entry] : folder) {
      if (entry.seen != seen || room == 0) continue;
      appendText(out, name);
      append(out, entry.stamp.bytes, 8);
      append(out, static_cast<std::uint64_t>(entry.stamp.modified), 8);
      append(out, static_cast<std::uint64_t>(entry.size.width), 4);
      append(out, static_cast<std::uint64_t>(entry.size.height), 4);
      ++count;
      --room;
    }
    for (std::size_t i = 0; i < 4; ++i) out[countAt + i] = static_cast<char>(count >> (8 * i) & 0xFF);
    if (count == 0) out.resize(start);
  }
}

DimensionCache::Folder* DimensionCache::folderOf(std::string_view folderPath) {
  if (last_ != nullptr && lastPath_ == folderPath) return last_;
  const auto found = folders_.find(folderPath);
  if (found == folders_.end()) return nullptr;
  lastPath_ = folderPath;
  last_ = &found->second;
  return last_;
}

std::optional<SizePx> DimensionCache::find(std::string_view path, const FileStamp& stamp) {
  const SplitPath parts = split(path);
  Folder* const folder = folderOf(parts.folder);
  if (folder == nullptr) return std::nullopt;
  const auto found = folder->find(parts.name);
  if (found == folder->end() || found->second.stamp != stamp) return std::nullopt;
  found->second.seen = true;
  return found->second.size;
}

void DimensionCache::keep(std::string_view path, const FileStamp& stamp, SizePx size) {
  const SplitPath parts = split(path);
  if (parts.folder.size() > PATH_MAX || parts.name.size() > PATH_MAX) return;
  Folder* folder = folderOf(parts.folder);
  if (folder == nullptr) folder = &folders_[std::string(parts.folder)];
  const auto [at, isNew] = folder->insert_or_assign(std::string(parts.name), Entry{stamp, size, true});
  if (isNew) ++size_;
  changed_ = true;
}

void DimensionCache::forgetUnseenBelow(std::string_view folder) {
  while (folder.ends_with('/')) folder.remove_suffix(1);
  last_ = nullptr;
  for (auto at = folders_.lower_bound(folder); at != folders_.end() && at->first.starts_with(folder);) {
    const bool below = at->first.size() == folder.size() || at->first[folder.size()] == '/';
    const std::size_t dropped =
        below ? std::erase_if(at->second, [](const auto& e) { return !e.second.seen; }) : 0;
    size_ -= dropped;
    changed_ |= dropped > 0;
    at = at->second.empty() ? folders_.erase(at) : std::next(at);
  }
}

}  // namespace lumivane
