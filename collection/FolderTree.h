// Goes through every folder below a root, however many and however deep, and tells a visitor what it meets.
//
// Threads: one at a time; the visitor is called on the same thread.
// Owns:    the open folders: never more than a few dozen, also in a tree thousands of folders deep.
// Units:   paths are bytes, as the file system has them.
// Errors:  told to the visitor, one folder at a time; the rest of the tree is still visited.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace lumivane {

// What stands in a folder, by its own kind: a symbolic link is a link, wherever it leads.
enum class EntryKind { File, Folder, Link, Other };

// One thing in a folder. Valid only during the visit.
struct FolderEntry {
  int folder = -1;              // the open folder that holds it, for the ...at() calls
  std::string_view folderPath;  // without a slash at its end; empty for "/"
  const char* name = "";
  EntryKind kind = EntryKind::Other;

  [[nodiscard]] std::string path() const;
};

class FolderVisitor {
 public:
  virtual ~FolderVisitor() = default;
  // Says of a folder whether to go into it; of everything else the answer does not count.
  [[nodiscard]] virtual bool visit(const FolderEntry& entry) = 0;
  // Is told of what is hidden, which is neither visited nor entered.
  virtual void passOver(const FolderEntry& /*entry*/) {}
  // A folder could not be opened, or not be read to its end. `error` is the system's number.
  virtual void cannotRead(const std::string& folderPath, int error) = 0;
  // Asked again and again: true ends the tour.
  [[nodiscard]] virtual bool stopWanted() const = 0;
};

class FolderTree {
 public:
  FolderTree();
  FolderTree(const FolderTree&) = delete;
  FolderTree& operator=(const FolderTree&) = delete;
  ~FolderTree();

  // Tours the tree below `root`, which is not an entry itself. Names with a leading dot are hidden and passed
  // over. Neither links nor anything but folders are ever opened.
  // Requires: an absolute path.
  void tour(const std::string& root, FolderVisitor& visitor);

 private:
  // A folder on the way from the root to where the tour stands.
  struct Level {
    int descriptor = -1;  // -1: closed to save descriptors; opened again when needed
    std::size_t pathLength = 0;
    std::vector<std::string> foldersToVisit;
  };

  void enter(int descriptor, FolderVisitor& visitor);
  void read(Level& level, FolderVisitor& visitor);
  void handle(const FolderEntry& entry, Level& level, FolderVisitor& visitor);
  void enterNextFolder(FolderVisitor& visitor);
  void leave();
  void closeDistantLevel();

  std::deque<Level> levels_;
  std::string path_;               // of the folder where the tour stands
  std::vector<std::byte> buffer_;  // for the system's list of entries
};

}  // namespace lumivane
