// Paths as the tree of folders that they speak of, so that only what stands in the same folder need be compared.
//
// Threads: one at a time.
// Owns:    the folders' places; the paths stay where they are.
// Units:   paths and folders by number, paths from 0 in their list.
// Errors:  none; any text is a path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lumivane {

// What stands in a folder: a path whose file it is, or a folder.
struct Sibling {
  std::string_view name;
  std::uint32_t number = 0;
  bool isFolder = false;
};

struct OrderedSibling {
  std::uint32_t number = 0;
  bool isFolder = false;
  bool isSameAsBefore = false;  // a folder that counts as one with the folder before it
};

class PathTree {
 public:
  // Puts siblings into their order.
  using Order = std::function<std::vector<OrderedSibling>(const std::vector<Sibling>& siblings)>;

  // Requires: the paths stay as they are, fewer than 2^32.
  explicit PathTree(const std::vector<std::string>& paths);

  // All paths, each folder's content in order, that of its folders in their places.
  [[nodiscard]] std::vector<std::uint32_t> tour(const Order& order) const;

 private:
  struct Folder {
    std::string_view name;
    std::vector<std::uint32_t> folders;
    std::uint32_t files = 0;      // how many
    std::uint32_t firstFile = 0;  // in filesByFolder_
  };

  struct Place {
    std::uint32_t folder = 0;
    std::string_view name;
    bool operator==(const Place&) const = default;
  };
  struct HashOfPlace {
    std::size_t operator()(const Place& place) const {
      return std::hash<std::string_view>()(place.name) * 31 + place.folder;
    }
  };

  std::uint32_t folderOf(std::string_view path);
  std::uint32_t innerFolder(Place place);
  void groupFiles(const std::vector<std::uint32_t>& folderOfPath);
  [[nodiscard]] std::vector<Sibling> contentOf(const std::vector<std::uint32_t>& folders) const;

  const std::vector<std::string>& paths_;
  std::vector<Folder> folders_;  // the first one holds everything
  std::unordered_map<Place, std::uint32_t, HashOfPlace> inner_;
  std::unordered_map<std::string_view, std::uint32_t> known_;  // by path: folders that files lie in
  std::vector<std::uint32_t> filesByFolder_;
};

}  // namespace lumivane
