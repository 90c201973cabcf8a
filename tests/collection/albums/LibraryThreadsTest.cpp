// A library read on several threads at once while its owner writes.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "collection/albums/SqlitePhotoLibrary.h"
#include "tests/collection/albums/MadeLibrary.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

TEST(LibraryThreads, readAtTheSameTimeAndWhatTheyReadIsOfOneMind) {
  const TemporaryFolder folder;
  MadeLibrary library(folder / "X.photoslibrary");
  library.writeAhead();
  library.addAlbum({.key = 10, .title = "album 0"});
  library.addAlbum({.key = 11, .title = "album 0"});
  const SqlitePhotoLibrary read(library.package(), "", "");
  std::atomic<int> readings{0};
  std::atomic<bool> differed{false};
  const auto readAgainAndAgain = [&](std::stop_token stop) {
    while (!stop.stop_requested()) {
      const Result<AlbumList> list = read.albums({});
      if (!list) continue;  // changed too fast
      if (list.value().albums.size() != 2 || list.value().albums[0].name != list.value().albums[1].name) {
        differed = true;
      }
      ++readings;
    }
  };
  std::jthread one(readAgainAndAgain);
  std::jthread other(readAgainAndAgain);
  // Both titles change together, so that no reading may see them differ.
  for (int i = 1; readings < 40 && i < 100000; ++i) {
    library.run("UPDATE ZGENERICALBUM SET ZTITLE = 'album " + std::to_string(i) + "' WHERE ZKIND = 2");
    if (i % 50 == 0) library.run("PRAGMA wal_checkpoint(PASSIVE)");
  }
  one.request_stop();
  other.request_stop();
  one.join();
  other.join();
  EXPECT_GE(readings, 1);
  EXPECT_FALSE(differed);
}

}  // namespace
}  // namespace lumivane
