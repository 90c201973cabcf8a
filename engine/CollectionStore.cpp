#include "engine/CollectionStore.h"

#include <atomic>
#include <exception>
#include <utility>

#include "collection/FileNameOrder.h"
#include "collection/ImageListFile.h"

namespace lumivane {

// Handed to the queue and back: the main thread touches only the flags while the queue has it.
struct CollectionStore::Work {
  StoredCollection collection;
  std::vector<std::string> paths;  // become the collection's list once they are in order
  std::optional<std::vector<std::string>> rootDirectories;  // absent: neither bookmarks nor order are wanted
  std::string collationLocale;
  std::string imageListPath;
  Completion completion;
  std::atomic<bool> cancelled{false};
  std::atomic<bool> written{false};

  // Without memory for the order, or for writing, the show still gets its pictures. Only what is whole and in order takes
  // the place of the list that was stored before.
  void tryToPerform(Files& files, Log& log) {
    if (cancelled) return;
    const bool inOrder = attempt(log, [&] { arrange(log); });
    const bool listed = attempt(log, [&] { collection.imagefiles = ImageList(std::exchange(paths, {})); });
    if (cancelled || !inOrder || !listed) return;
    attempt(log, [&] {
      saveImageList(files, imageListPath, collection.imagefiles, log);
      written = true;
    });
  }

 private:
  void arrange(Log& log) {
    if (!rootDirectories) return;
    collection.directoryBookmarks = createBookmarks(rootDirectories, log);
    sortByFileName(paths, collationLocale);
  }

  template <class Step>
  static bool attempt(Log& log, const Step& step) {
    try {
      step();
      return true;
    } catch (const std::exception& failure) {
      log.error(std::string("Storing the collection failed: ") + failure.what() + "!");
      return false;
    }
  }
};

CollectionStore::CollectionStore(SerialQueues& queues, MainLoop& mainLoop, Files& files, Log& log)
    : queues_(queues), mainLoop_(mainLoop), files_(files), log_(log), shortened_(files, log) {}

CollectionStore::~CollectionStore() {
  static_cast<void>(finish());
}

SerialQueue& CollectionStore::queue() {
  if (!queue_) queue_ = queues_.make("LumivaneScanQueue");
  return *queue_;
}

void CollectionStore::storeFolders(WalkResult found, std::string collationLocale, std::string imageListPath,
                                   Completion completion) {
  auto work = std::make_shared<Work>();
  work->paths = std::move(found.imagefiles);
  work->rootDirectories = std::move(found.rootDirectories);
  work->collationLocale = std::move(collationLocale);
  work->imageListPath = std::move(imageListPath);
  work->completion = std::move(completion);
  begin(std::move(work));
}

void CollectionStore::storeAlbum(std::vector<std::string> imagefiles, std::string imageListPath,
                                 Completion completion) {
  auto work = std::make_shared<Work>();
  work->paths = std::move(imagefiles);
  work->imageListPath = std::move(imageListPath);
  work->completion = std::move(completion);
  begin(std::move(work));
}

// The job that comes back finds nothing where the collection was forgotten meanwhile, or this object is gone.
void CollectionStore::begin(std::shared_ptr<Work> work) {
  static_cast<void>(cancel());
  work_ = work;
  queue().async(
      [this, work = std::move(work), &mainLoop = mainLoop_, &files = files_, &log = log_]() mutable {
        work->tryToPerform(files, log);
        mainLoop.post([this, waiting = std::weak_ptr(work)] {
          if (const std::shared_ptr<Work> done = waiting.lock()) complete(*done);
        });
      });
}

void CollectionStore::complete(Work& work) {
  if (work.cancelled) return;
  work_.reset();
  work.completion(std::move(work.collection));
}

std::optional<StoredCollection> CollectionStore::cancel() {
  if (work_) work_->cancelled = true;
  return takeWritten(std::exchange(work_, nullptr));
}

std::optional<StoredCollection> CollectionStore::finish() {
  const std::shared_ptr<Work> work = std::exchange(work_, nullptr);
  if (work) work->cancelled = true;
  queue_.reset();
  shortened_.write();
  return takeWritten(work);
}

std::optional<StoredCollection> CollectionStore::takeWritten(const std::shared_ptr<Work>& work) {
  if (!work || !work->written) return std::nullopt;
  return std::move(work->collection);
}

void CollectionStore::storeShortened(ImageList imagefiles, std::string imageListPath) {
  if (work_) return;
  shortened_.keep(std::move(imageListPath), std::move(imagefiles));
  queue().async([this] { shortened_.write(); });
}

void CollectionStore::finishShortened() {
  shortened_.write();
}

void CollectionStore::discard(std::unique_ptr<FolderScan> scan) {
  scan->abandon();
  queue().async([scan = std::shared_ptr<FolderScan>(std::move(scan))] {});
}

}  // namespace lumivane
