#include "engine/PictureDeletion.h"

#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

bool canBeFileUrl(const std::string& path) {
  return path.starts_with('/') && path.find('\0') == std::string::npos;
}

// Why the file is not in the trash; empty when it is.
std::string reasonAgainst(const Files& files, Trash& trash, const std::string& path) {
  if (!files.exists(path)) return "Image at path " + printable(path) + " does not exist!";
  if (!canBeFileUrl(path)) return "fileURLWithPath failed for: " + printable(path) + "!";
  const Result<Done> trashed = trash.trashItem(path);
  return trashed ? std::string() : "Failed to delete " + printable(path) + "!\n Error: " + trashed.error();
}

}  // namespace

DeletionOutcome deleteFile(const Files& files, Trash& trash, const std::string& path) {
  std::string reason = reasonAgainst(files, trash, path);
  if (reason.empty()) return std::nullopt;
  return DeletionFailure{std::move(reason), fileAccessText(files, path)};
}

std::string fileAccessText(const Files& files, const std::string& path) {
  const Result<Done> probe = files.probeForUpdating(path);
  return probe ? "  No error found!" : "Error: " + probe.error();
}

PictureDeletion::PictureDeletion(SerialQueues& queues, MainLoop& mainLoop, const Files& files, Trash& trash)
    : queues_(queues), mainLoop_(mainLoop), files_(files), trash_(trash) {}

// The job that comes back finds nothing where this object is gone.
void PictureDeletion::begin(const std::string& path, Completion completion) {
  if (!underWay_->insert(path).second) return;
  if (!queue_) queue_ = queues_.make("LumivaneTrashQueue");
  queue_->async([path, completion = std::move(completion), alive = std::weak_ptr(underWay_),
                 &mainLoop = mainLoop_, &files = files_, &trash = trash_] {
    mainLoop.post([path, completion, alive, outcome = deleteFile(files, trash, path)] {
      const auto underWay = alive.lock();
      if (!underWay) return;
      underWay->erase(path);
      completion(outcome);
    });
  });
}

}  // namespace lumivane
