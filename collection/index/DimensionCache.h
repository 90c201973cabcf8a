// The sizes of pictures that were measured before, by path and stamp: a file that is as it was needs not be opened.
//
// Threads: one at a time.
// Owns:    the sizes; written out at most kMostEntries of them.
// Units:   as in FileIndex.h and PictureDimensions.h.
// Errors:  bytes that were not written by this class, or are damaged, are an Error.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/FileIndex.h"
#include "platform/Result.h"

namespace lumivane {

class DimensionCache {
 public:
  static constexpr std::size_t kMostEntries = 1'000'000;

  DimensionCache() = default;
  DimensionCache(DimensionCache&&) = default;
  DimensionCache& operator=(DimensionCache&&) = default;

  [[nodiscard]] static Result<DimensionCache> parsed(std::string_view content);
  // What was seen since parsed() comes before the rest, should there be too many.
  [[nodiscard]] std::string content() const;

  // The size of the picture in a file that still has this stamp; kNoPicture counts as one. It has been seen then.
  [[nodiscard]] std::optional<SizePx> find(std::string_view path, const FileStamp& stamp);
  // Requires: an absolute path.
  void keep(std::string_view path, const FileStamp& stamp, SizePx size);
  // Drops whatever lies below the folder and was neither found nor kept since parsed().
  void forgetUnseenBelow(std::string_view folder);

  [[nodiscard]] std::size_t size() const { return size_; }
  // Whether content() would say something else than what was parsed.
  [[nodiscard]] bool isChanged() const { return changed_; }

 private:
  struct Entry {
    FileStamp stamp;
    SizePx size;
    bool seen = false;
  };
  struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
  };
  using Folder = std::unordered_map<std::string, Entry, NameHash, std::equal_to<>>;
  class Reader;

  [[nodiscard]] bool readFolder(Reader& reader);
  void writeEntries(std::string& out, bool seen, std::size_t& room) const;
  [[nodiscard]] Folder* folderOf(std::string_view folderPath);

  std::map<std::string, Folder, std::less<>> folders_;  // by path, without a slash at its end
  std::size_t size_ = 0;
  bool changed_ = false;
  // Files come folder by folder: the one asked for last.
  std::string lastPath_;
  Folder* last_ = nullptr;
};

}  // namespace lumivane
