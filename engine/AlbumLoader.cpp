#include "engine/AlbumLoader.h"

#include <utility>

namespace lumivane {

AlbumLoader::AlbumLoader(const PhotoLibrary& library, SerialQueues& queues, MainLoop& mainLoop)
    : library_(library), mainLoop_(mainLoop), queue_(queues.make("LumivaneAlbumQueue")) {}

AlbumLoader::~AlbumLoader() {
  albums_.request_stop();
  mediaObjects_.request_stop();
}

// The stop is requested on the main thread, where the answer is told: none is told after it.
template <typename Answer>
void AlbumLoader::load(const std::stop_token& stop, std::function<Answer(const std::stop_token&)> read,
                       std::function<void(Answer)> loaded) {
  queue_->async([read = std::move(read), loaded = std::move(loaded), stop, &mainLoop = mainLoop_] {
    auto answer = std::make_shared<Answer>(read(stop));
    mainLoop.post([answer, loaded, stop] {
      if (!stop.stop_requested()) loaded(std::move(*answer));
    });
  });
}

void AlbumLoader::loadAlbums(AlbumsLoaded loaded) {
  load<Result<AlbumList>>(
      albums_.get_token(),
      [&library = library_](const std::stop_token& stop) { return library.albums(stop); }, std::move(loaded));
}

void AlbumLoader::loadMediaObjects(const Album& album, MediaObjectsLoaded loaded) {
  cancelMediaObjects();
  load<Result<std::vector<AlbumPicture>>>(
      mediaObjects_.get_token(),
      [&library = library_, album](const std::stop_token& stop) {
        return library.pictures(album, AlbumDetail::Files, stop);
      },
      std::move(loaded));
}

void AlbumLoader::cancelMediaObjects() {
  mediaObjects_.request_stop();
  mediaObjects_ = std::stop_source();
}

}  // namespace lumivane
