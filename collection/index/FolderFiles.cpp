#include "collection/index/FolderFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "collection/FolderTree.h"
#include "collection/ListedPath.h"
#include "collection/PictureTypes.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

// Hands on every file that is a picture by its name, whatever its size: who keeps the sizes of pictures has to know
// which are still there.
class PictureVisitor final : public FolderVisitor {
 public:
  PictureVisitor(const IndexedFolder::Found& found, Log& log, const TellLeftOut& tellLeftOut,
                 std::stop_token stop)
      : found_(found), log_(log), tellLeftOut_(tellLeftOut), stop_(std::move(stop)) {}

  bool visit(const FolderEntry& entry) override {
    switch (entry.kind) {
      case EntryKind::Folder:
        return visitFolder(entry);
      case EntryKind::File:
        visitFile(entry);
        return false;
      case EntryKind::Link:
        leaveOut(entry, LeftOut::Link);
        return false;
      case EntryKind::Other:
        leaveOut(entry, LeftOut::NoFile);
        return false;
    }
    return false;
  }
  void passOver(const FolderEntry& entry) override { leaveOut(entry, LeftOut::Hidden); }
  void cannotRead(const std::string& folderPath, int error) override {
    log_.error("Folder cannot be read: " + printable(folderPath) + ": " +
               std::generic_category().message(error));
  }
  [[nodiscard]] bool stopWanted() const override { return stop_.stop_requested(); }

 private:
  bool visitFolder(const FolderEntry& entry) {
    if (fitsInList(entry.name)) return true;
    log_.error("Folder name cannot be kept in the image list: " + printable(entry.path()) + " !");
    leaveOut(entry, LeftOut::Name);
    return false;
  }

  void visitFile(const FolderEntry& entry) {
    if (!isPictureFileName(entry.name)) {
      leaveOut(entry, LeftOut::Type);
      return;
    }
    if (const std::string_view problem = problemOfListedPath(entry.folderPath, entry.name);
        !problem.empty()) {
      log_.error(std::string(problem) + printable(entry.path()) + " !");
      leaveOut(entry, LeftOut::Name);
      return;
    }
    struct stat status {};
    if (fstatat(entry.folder, entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode)) {
      leaveOut(entry, LeftOut::NoFile);
      return;
    }
    found_({entry.path(), stampOf(status), std::nullopt});
  }

  void leaveOut(const FolderEntry& entry, LeftOut rule) const {
    if (tellLeftOut_) tellLeftOut_(entry.path(), rule);
  }

  const IndexedFolder::Found& found_;
  Log& log_;
  const TellLeftOut& tellLeftOut_;
  const std::stop_token stop_;
};

class WalkedFolder final : public IndexedFolder {
 public:
  WalkedFolder(std::string folder, Log& log, const TellLeftOut& tellLeftOut)
      : folder_(std::move(folder)), log_(log), tellLeftOut_(tellLeftOut) {}

  [[nodiscard]] std::string name() const override { return "the headers of the files"; }
  [[nodiscard]] bool tellsOfAllFiles() const override { return true; }
  [[nodiscard]] Result<Done> search(const PicturePredicate& /*predicate*/, const Found& found,
                                    std::stop_token stop) override {
    PictureVisitor visitor(found, log_, tellLeftOut_, std::move(stop));
    FolderTree().tour(folder_, visitor);
    return Done{};
  }

 private:
  const std::string folder_;
  Log& log_;
  const TellLeftOut& tellLeftOut_;
};

}  // namespace

FolderFiles::FolderFiles(Log& log, TellLeftOut tellLeftOut)
    : log_(log), tellLeftOut_(std::move(tellLeftOut)) {}

Result<std::unique_ptr<IndexedFolder>> FolderFiles::open(const std::string& folder,
                                                         std::stop_token /*stop*/) {
  return std::unique_ptr<IndexedFolder>(std::make_unique<WalkedFolder>(folder, log_, tellLeftOut_));
}

}  // namespace lumivane
