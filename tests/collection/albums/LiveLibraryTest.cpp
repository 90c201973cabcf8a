// Libraries in use, with a write-ahead log, locked, linked, or only to be read: what is read, and that nothing of the
// package changes.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "collection/albums/LibraryDatabase.h"
#include "collection/albums/LibraryFiles.h"
#include "collection/albums/SqlitePhotoLibrary.h"
#include "tests/collection/albums/MadeLibrary.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class LiveLibrary : public testing::Test {
 protected:
  LiveLibrary() {
    library_.addAlbum({.key = 10, .title = "in the database", .position = 1});
    library_.addAsset({.key = 1, .fileName = "1.jpeg"});
    library_.put(1, 10);
  }

  // The names in order, or the error's text; the package must stay as it is.
  [[nodiscard]] std::vector<std::string> namesIn(const std::string& package) const {
    const auto before = inventoryOf(library_.package());
    const SqlitePhotoLibrary read(package, "", "");
    const Result<AlbumList> list = read.albums({});
    if (list && !list.value().albums.empty()) {
      EXPECT_TRUE(read.pictures(list.value().albums[0], AlbumDetail::Descriptions, {}));
    }
    EXPECT_EQ(inventoryOf(library_.package()), before);
    if (!list) return {list.error()};
    std::vector<std::string> result;
    for (const Album& album : list.value().albums) result.push_back(album.name);
    return result;
  }
  [[nodiscard]] std::vector<std::string> names() const { return namesIn(library_.package()); }

  // Without a look at the files: closing one of them would end the locks that this process has on it.
  [[nodiscard]] std::string problem() const {
    const Result<AlbumList> list = SqlitePhotoLibrary(library_.package(), "", "").albums({});
    return list ? "none" : list.error();
  }

  void addInLog() { library_.addAlbum({.key = 11, .title = "in the log", .position = 2}); }
  [[nodiscard]] std::string logPath() const { return library_.databasePath() + "-wal"; }
  [[nodiscard]] std::string indexPath() const { return library_.databasePath() + "-shm"; }

  const TemporaryFolder folder_;
  MadeLibrary library_{folder_ / "X.photoslibrary"};
};

TEST_F(LiveLibrary, inUseIsReadWithItsLog) {
  library_.writeAhead();
  addInLog();
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
  ASSERT_TRUE(fs::exists(indexPath()));
}

TEST_F(LiveLibrary, whatIsNotYetCommittedIsNotSeen) {
  library_.writeAhead();
  library_.run("BEGIN IMMEDIATE");
  addInLog();
  EXPECT_THAT(names(), ElementsAre("in the database"));
  library_.run("COMMIT");
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
}

TEST_F(LiveLibrary, leftWithALogIsReadWithIt) {
  library_.writeAhead();
  addInLog();
  library_.close();
  ASSERT_GT(fs::file_size(logPath()), 0U);
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
}

TEST_F(LiveLibrary, withoutTheIndexOfItsLogIsReadAllTheSame) {
  library_.writeAhead();
  addInLog();
  library_.close();
  fs::remove(indexPath());
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
  EXPECT_FALSE(fs::exists(indexPath()));
}

TEST_F(LiveLibrary, aWrongIndexOfTheLogIsNotBelieved) {
  library_.writeAhead();
  addInLog();
  library_.close();
  std::ofstream(indexPath(), std::ios::trunc) << std::string(32768, 'x');
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
}

TEST_F(LiveLibrary, withAnEmptyLogOrNoneIsReadWithout) {
  library_.writeAhead();
  addInLog();
  library_.checkpoint();
  library_.close();
  ASSERT_EQ(fs::file_size(logPath()), 0U);
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
  fs::remove(logPath());
  fs::remove(indexPath());
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
  EXPECT_FALSE(fs::exists(logPath()));
}

TEST_F(LiveLibrary, aLogThatWasCutOffIsReadAsFarAsItGoes) {
  library_.writeAhead();
  addInLog();
  library_.addAlbum({.key = 12, .title = "cut off", .position = 3});
  library_.close();
  fs::resize_file(logPath(), fs::file_size(logPath()) - 1000);
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
}

TEST_F(LiveLibrary, aLogThatMayNotBeReadIsNotLeftOut) {
  library_.writeAhead();
  addInLog();
  library_.close();
  fs::remove(logPath());
  fs::create_directory(logPath());
  EXPECT_THAT(names(), ElementsAre(HasSubstr("its database-wal cannot be opened: it is not a file")));
}

TEST_F(LiveLibrary, thatMayOnlyBeReadIsRead) {
  library_.writeAhead();
  addInLog();
  library_.close();
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(library_.package())) {
    fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::remove);
  }
  EXPECT_THAT(names(), ElementsAre("in the database", "in the log"));
}

TEST_F(LiveLibrary, behindLinksIsRead) {
  library_.writeAhead();
  addInLog();
  library_.close();
  fs::create_directory_symlink(library_.package(), folder_ / "Link.photoslibrary");
  EXPECT_THAT(namesIn(folder_ / "Link.photoslibrary"), ElementsAre("in the database", "in the log"));
  const auto pictures = SqlitePhotoLibrary(folder_ / "Link.photoslibrary", "", "")
                            .pictures({"", "UUID-10", 0}, AlbumDetail::Descriptions, {});
  ASSERT_TRUE(pictures) << pictures.error();
  EXPECT_EQ(pictures.value().at(0).path, folder_ / "Link.photoslibrary/originals/A/1.jpeg");
  // A package whose database alone is a link: its log lies where the database really is.
  fs::create_directories(folder_ / "Other.photoslibrary/database");
  fs::create_symlink(library_.databasePath(), folder_ / "Other.photoslibrary/database/Photos.sqlite");
  EXPECT_THAT(namesIn(folder_ / "Other.photoslibrary"), ElementsAre("in the database", "in the log"));
}

TEST_F(LiveLibrary, lockedByAWriterIsAProblem) {
  library_.run("BEGIN EXCLUSIVE");
  EXPECT_THAT(problem(), HasSubstr("another program has locked it"));
  library_.run("COMMIT");
  EXPECT_THAT(names(), ElementsAre("in the database"));
}

TEST_F(LiveLibrary, lockedForGoodByAWriterWithALogIsAProblem) {
  library_.run("PRAGMA locking_mode = EXCLUSIVE");
  library_.writeAhead();
  addInLog();
  EXPECT_THAT(problem(), HasSubstr("another program has locked it"));
}

TEST_F(LiveLibrary, withAChangeThatWasBrokenOffIsAProblem) {
  library_.run("PRAGMA cache_size = 1");
  library_.run("BEGIN EXCLUSIVE");
  for (int key = 100; key < 400; ++key) library_.addAlbum({.key = key, .title = std::string(200, 'a')});
  // What a crash leaves behind: the database half written, and the journal to undo it.
  fs::create_directories(folder_ / "Y.photoslibrary");
  fs::copy(library_.package(), folder_ / "Y.photoslibrary", fs::copy_options::recursive);
  ASSERT_TRUE(fs::exists(folder_ / "Y.photoslibrary/database/Photos.sqlite-journal"));
  library_.run("ROLLBACK");
  const auto before = inventoryOf(folder_ / "Y.photoslibrary");
  const Result<AlbumList> list = SqlitePhotoLibrary(folder_ / "Y.photoslibrary", "", "").albums({});
  ASSERT_FALSE(list);
  EXPECT_THAT(list.error(), HasSubstr("a change of it was broken off"));
  EXPECT_EQ(inventoryOf(folder_ / "Y.photoslibrary"), before);
}

TEST_F(LiveLibrary, aWriterGoesOnWhileItIsRead) {
  library_.writeAhead();
  addInLog();
  Result<LibraryFiles> files = LibraryFiles::open(library_.databasePath());
  ASSERT_TRUE(files) << files.error();
  auto database = LibraryDatabase::open(std::move(files).value(), {});
  ASSERT_TRUE(database) << database.error();
  const auto count = [&] {
    std::int64_t albums = 0;
    Result<LibraryQuery> query = database.value()->query("SELECT Z_PK FROM ZGENERICALBUM WHERE ZKIND = 2");
    EXPECT_TRUE(query && query.value().run({}, [&](const LibraryRow&) { return ++albums < 100; }));
    return albums;
  };
  EXPECT_EQ(count(), 2);
  library_.addAlbum({.key = 12, .title = "later", .position = 3});
  EXPECT_EQ(count(), 2) << "one reading, one state";
  EXPECT_FALSE(database.value()->changedMeanwhile()) << "a longer log does no harm";
  library_.run("PRAGMA wal_checkpoint(PASSIVE)");
  EXPECT_TRUE(database.value()->changedMeanwhile());
}

TEST_F(LiveLibrary, itsWriterCannotTakeTheLogAwayWhileItIsRead) {
  library_.writeAhead();
  addInLog();
  const Result<LibraryFiles> files = LibraryFiles::open(library_.databasePath());
  ASSERT_TRUE(files);
  const int other = ::open(library_.databasePath().c_str(), O_RDWR | O_CLOEXEC);
  struct flock range {};
  range.l_type = F_WRLCK;
  range.l_whence = SEEK_SET;
  range.l_start = 0x40000002;
  range.l_len = 510;
  EXPECT_EQ(fcntl(other, F_OFD_SETLK, &range), -1) << "a reader holds its lock";
  ::close(other);
}

TEST_F(LiveLibrary, openFilesAreClosedAgain) {
  library_.writeAhead();
  addInLog();
  const auto openFiles = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto before = openFiles();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(names().size(), 2U);
  EXPECT_EQ(openFiles(), before);
}

}  // namespace
}  // namespace lumivane
