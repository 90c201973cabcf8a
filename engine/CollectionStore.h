// Puts a new collection in order and keeps it, on a background queue: for a million pictures that takes seconds, in
// which the main thread has other things to do.
//
// Threads: main only; the work itself runs on the queue, and its end is told on the main thread.
// Owns:    the queue, from its first use on; the collection that is being stored.
// Errors:  logged; the collection is handed back in any case.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "collection/DirectoryWalk.h"
#include "collection/FolderBookmarks.h"
#include "collection/ImageList.h"
#include "engine/FolderScan.h"
#include "engine/ImageListWriter.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/MainLoop.h"
#include "platform/SerialQueue.h"

namespace lumivane {

struct StoredCollection {
  ImageList imagefiles;
  std::optional<std::vector<FolderBookmark>> directoryBookmarks;  // absent: those in force stay
};

class CollectionStore {
 public:
  using Completion = std::function<void(StoredCollection stored)>;

  CollectionStore(SerialQueues& queues, MainLoop& mainLoop, Files& files, Log& log);
  CollectionStore(const CollectionStore&) = delete;
  CollectionStore& operator=(const CollectionStore&) = delete;
  ~CollectionStore();

  // Makes the bookmarks, sorts by the language's rules, writes the list, in this order.
  void storeFolders(WalkResult found, std::string collationLocale, std::string imageListPath,
                    Completion completion);
  // Writes the list as it is.
  void storeAlbum(std::vector<std::string> imagefiles, std::string imageListPath, Completion completion);

  // Forgets what is being stored: its completion is not called, and a list that is not being written yet will not
  // be. What is handed back has been written; its bookmarks are still to be saved.
  [[nodiscard]] std::optional<StoredCollection> cancel();
  // The same for good, after waiting for the work that has begun; a shortened list is written in any case.
  [[nodiscard]] std::optional<StoredCollection> finish();

  // Writes the list that a picture was struck off. Not while a new collection is being stored, which takes its place.
  void storeShortened(ImageList imagefiles, std::string imageListPath);
  // Returns when such a list has been written: before its file is read again.
  void finishShortened();

  // Destroys on the queue what takes long to destroy: a walk that has to be waited for.
  void discard(std::unique_ptr<FolderScan> scan);

 private:
  struct Work;

  void begin(std::shared_ptr<Work> work);
  void complete(Work& work);
  [[nodiscard]] static std::optional<StoredCollection> takeWritten(const std::shared_ptr<Work>& work);
  SerialQueue& queue();

  SerialQueues& queues_;
  MainLoop& mainLoop_;
  Files& files_;
  Log& log_;
  ImageListWriter shortened_;
  std::shared_ptr<Work> work_;  // nullptr: nothing is being stored
  std::unique_ptr<SerialQueue> queue_;
};

}  // namespace lumivane
