// A library read on several threads at once while its owner writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "collection/albums/SqlitePhotoLibrary.h"
#include "tests/collection/albums/MadeLibrary.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

constexpr int kAlbums = 100;
constexpr int kEnoughReadings = 25;
constexpr int kMostChanges = 500;

// A name that fills a good part of a page of the database.
std::string nameNumber(int number) {
  return std::to_string(number) + std::string(300, 'x');
}

TEST(LibraryThreads, readAtTheSameTimeAndWhatTheyReadIsOfOneMind) {
  const TemporaryFolder folder;
  MadeLibrary library(folder / "X.photoslibrary");
  library.writeAhead();
  library.run("BEGIN");
  for (int key = 10; key < 10 + kAlbums; ++key) library.addAlbum({.key = key, .title = nameNumber(0)});
  library.run("COMMIT");
  const SqlitePhotoLibrary read(library.package(), "", "");
  std::atomic<int> readings{0};
  std::atomic<bool> differed{false};
  const auto readAgainAndAgain = [&](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      const Result<AlbumList> list = read.albums({});
      if (!list) continue;  // changed too fast, too often
      const std::vector<Album>& albums = list.value().albums;
      const bool same =
          std::ranges::all_of(albums, [&](const Album& album) { return album.name == albums.front().name; });
      if (albums.size() != kAlbums || !same) differed = true;
      ++readings;
    }
  };
  std::jthread one(readAgainAndAgain);
  std::jthread other(readAgainAndAgain);
  // All names change together, so that no reading may see them differ; each time they move from the log into the
  // database, and the log begins anew.
  for (int i = 1; readings < kEnoughReadings && i < kMostChanges; ++i) {
    library.run("UPDATE ZGENERICALBUM SET ZTITLE = '" + nameNumber(i) + "' WHERE ZKIND = 2");
    if (i % 4 == 0) library.run("PRAGMA wal_checkpoint(PASSIVE)");
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
