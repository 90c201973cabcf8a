#include "collection/PathTree.h"

#include <cstddef>

namespace lumivane {
namespace {

std::string_view folderPart(std::string_view path) {
  return path.substr(0, path.rfind('/') + 1);  // nothing when there is no slash
}

std::string_view namePart(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

PathTree::PathTree(const std::vector<std::string>& paths) : paths_(paths), folders_(1) {
  std::vector<std::uint32_t> folderOfPath;
  folderOfPath.reserve(paths.size());
  std::string_view lastFolder;
  std::uint32_t lastNumber = 0;
  for (const std::string& path : paths) {
    const std::string_view folder = folderPart(path);
    if (folder != lastFolder) {  // most paths lie where the one before lies
      lastFolder = folder;
      lastNumber = folderOf(folder);
    }
    ++folders_[lastNumber].files;
    folderOfPath.push_back(lastNumber);
  }
  groupFiles(folderOfPath);
}

// The number of a folder, whose path ends with a slash; it is added where it is new. Step by step from the top: a path
// of nothing but slashes must not take longer than others of its length.
std::uint32_t PathTree::folderOf(std::string_view path) {
  const auto [entry, isNew] = known_.try_emplace(path, 0);
  if (!isNew) return entry->second;
  std::uint32_t number = 0;
  for (std::string_view rest = path; !rest.empty();) {
    const std::size_t slash = rest.find('/');
    number = innerFolder({number, rest.substr(0, slash)});
    rest.remove_prefix(slash + 1);
  }
  entry->second = number;
  return number;
}

std::uint32_t PathTree::innerFolder(Place place) {
  const auto next = static_cast<std::uint32_t>(folders_.size());
  const auto [entry, isNew] = inner_.try_emplace(place, next);
  if (isNew) {
    folders_[place.folder].folders.push_back(next);
    folders_.push_back({place.name, {}, 0, 0});
  }
  return entry->second;
}

void PathTree::groupFiles(const std::vector<std::uint32_t>& folderOfPath) {
  std::uint32_t begin = 0;
  std::vector<std::uint32_t> next;
  next.reserve(folders_.size());
  for (Folder& folder : folders_) {
    folder.firstFile = begin;
    next.push_back(begin);
    begin += folder.files;
  }
  filesByFolder_.resize(folderOfPath.size());
  for (std::size_t i = 0; i < folderOfPath.size(); ++i) {
    filesByFolder_[next[folderOfPath[i]]++] = static_cast<std::uint32_t>(i);
  }
}

std::vector<Sibling> PathTree::contentOf(const std::vector<std::uint32_t>& folders) const {
  std::vector<Sibling> content;
  for (const std::uint32_t number : folders) {
    const Folder& folder = folders_[number];
    content.reserve(content.size() + folder.files + folder.folders.size());
    for (std::uint32_t i = folder.firstFile; i < folder.firstFile + folder.files; ++i) {
      content.push_back({namePart(paths_[filesByFolder_[i]]), filesByFolder_[i], false});
    }
    for (const std::uint32_t inner : folder.folders) content.push_back({folders_[inner].name, inner, true});
  }
  return content;
}

std::vector<std::uint32_t> PathTree::tour(const Order& order) const {
  struct Level {
    std::vector<OrderedSibling> content;
    std::size_t next = 0;
  };
  std::vector<std::uint32_t> result;
  result.reserve(paths_.size());
  std::vector<Level> levels;  // a tree may be deeper than the stack allows
  levels.push_back({order(contentOf({0})), 0});
  while (!levels.empty()) {
    Level& level = levels.back();
    std::vector<std::uint32_t> sameFolders;
    while (level.next < level.content.size()) {
      const OrderedSibling& sibling = level.content[level.next];
      if (!sameFolders.empty() && !sibling.isSameAsBefore) break;
      ++level.next;
      (sibling.isFolder ? sameFolders : result).push_back(sibling.number);
    }
    if (sameFolders.empty())
      levels.pop_back();
    else
      levels.push_back({order(contentOf(sameFolders)), 0});
  }
  return result;
}

}  // namespace lumivane
