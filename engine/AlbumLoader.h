// Reads albums of the photo library on a background queue.
//
// Threads: main only; the library is read on the queue, and the answers come on the main thread.
// Owns:    its queue. Destruction breaks off what is being read, and its answers are not told any more.
// Errors:  as PhotoLibrary.h says, in the answers.
#pragma once

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

#include "collection/albums/PhotoLibrary.h"
#include "platform/MainLoop.h"
#include "platform/SerialQueue.h"

namespace lumivane {

class AlbumLoader {
 public:
  using AlbumsLoaded = std::function<void(Result<AlbumList> answer)>;
  using MediaObjectsLoaded = std::function<void(Result<std::vector<AlbumPicture>> answer)>;

  AlbumLoader(const PhotoLibrary& library, SerialQueues& queues, MainLoop& mainLoop);
  AlbumLoader(const AlbumLoader&) = delete;
  AlbumLoader& operator=(const AlbumLoader&) = delete;
  ~AlbumLoader();

  void loadAlbums(AlbumsLoaded loaded);
  // Takes the place of an earlier request of this kind.
  void loadMediaObjects(const Album& album, MediaObjectsLoaded loaded);
  void cancelMediaObjects();

 private:
  // Until a stop is requested, the answer is waited for.
  template <typename Answer>
  void load(const std::stop_token& stop, std::function<Answer(const std::stop_token&)> read,
            std::function<void(Answer)> loaded);

  const PhotoLibrary& library_;
  MainLoop& mainLoop_;
  std::stop_source albums_;
  std::stop_source mediaObjects_;
  std::unique_ptr<SerialQueue> queue_;  // last: its job ends before anything it uses
};

}  // namespace lumivane
