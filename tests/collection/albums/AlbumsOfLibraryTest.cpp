// Which albums a library has, and what stands in the way of reading them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "collection/albums/SqlitePhotoLibrary.h"
#include "tests/collection/albums/MadeLibrary.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class AlbumsOfLibrary : public testing::Test {
 protected:
  // The names in order, or the error's text.
  [[nodiscard]] std::vector<std::string> names(const std::string& package) const {
    const Result<AlbumList> list = SqlitePhotoLibrary(package, "", "").albums({});
    if (!list) return {list.error()};
    std::vector<std::string> result;
    for (const Album& album : list.value().albums) result.push_back(album.name);
    return result;
  }
  // That the library cannot be read for a reason, told in one line, and stays as it is.
  void expectProblem(const std::string& reason) const {
    const auto before = inventoryOf(package_);
    const Result<AlbumList> list = SqlitePhotoLibrary(package_, "", "").albums({});
    ASSERT_FALSE(list);
    EXPECT_THAT(list.error(), AllOf(StartsWith("Photo library " + package_ + " cannot be read: "),
                                    HasSubstr(reason), testing::Not(HasSubstr("\n"))));
    EXPECT_EQ(inventoryOf(package_), before);
  }
  [[nodiscard]] std::string databasePath() const { return package_ + "/database/Photos.sqlite"; }

  const TemporaryFolder folder_;
  const std::string package_ = folder_ / "X.photoslibrary";
};

TEST_F(AlbumsOfLibrary, areThoseOfTheUserAtTheTopInTheUsersOrder) {
  MadeLibrary library(package_);
  library.addAlbum({.key = 10, .title = "second", .position = 20});
  library.addAlbum({.key = 11, .title = "first", .position = 10});
  library.addAlbum({.key = 12, .title = "in the trash", .position = 5, .trashed = 1});
  library.addAlbum({.key = 13, .title = "folder", .position = 6, .kind = 4000});
  library.addAlbum({.key = 14, .title = "in a folder", .position = 1, .parent = 13});
  library.addAlbum({.key = 15, .title = "smart", .position = 7, .kind = 1507});
  library.addAlbum({.key = 16, .title = "progress-sync", .position = 8, .kind = 3571});
  library.addAlbum({.key = 17, .title = "under the root of projects", .position = 8, .parent = 1});
  library.close();
  EXPECT_THAT(names(package_), ElementsAre("first", "second"));
}

TEST_F(AlbumsOfLibrary, mayShareANameAndHaveNone) {
  MadeLibrary library(package_);
  library.addAlbum({.key = 10, .title = "twin", .position = 1});
  library.addAlbum({.key = 11, .title = "twin", .position = 1});
  library.addAlbum({.key = 12, .title = "twin", .position = 2, .trashed = 1});
  library.addAlbum({.key = 13, .title = "", .position = 3});
  library.close();
  const Result<AlbumList> list = SqlitePhotoLibrary(package_, "", "").albums({});
  ASSERT_TRUE(list) << list.error();
  EXPECT_THAT(list.value().albums,
              ElementsAre(Album{"twin", "UUID-10", 0}, Album{"twin", "UUID-11", 0}, Album{"", "UUID-13", 0}));
}

TEST_F(AlbumsOfLibrary, countThePicturesThatCanBeShown) {
  MadeLibrary library(package_);
  library.addAlbum({.key = 10, .title = "album", .position = 1});
  library.addAlbum({.key = 11, .title = "empty", .position = 2});
  library.addAsset({.key = 1, .fileName = "1.jpeg"});
  library.addAsset({.key = 2, .fileName = "2.jpeg", .hidden = 1});
  library.addAsset({.key = 3, .fileName = "3.mov", .kind = 1});
  library.addAsset({.key = 4, .fileName = "4.jpeg", .trashed = 1});
  library.addAsset({.key = 5, .fileName = "5.jpeg", .visibility = 2});
  library.addAsset({.key = 6, .fileName = "6.jpeg"});
  for (int key = 1; key <= 6; ++key) library.put(key, 10);
  library.close();
  const Result<AlbumList> list = SqlitePhotoLibrary(package_, "", "").albums({});
  ASSERT_TRUE(list) << list.error();
  EXPECT_THAT(list.value().albums, ElementsAre(Album{"album", "UUID-10", 2}, Album{"empty", "UUID-11", 0}));
}

class EveryRelease : public AlbumsOfLibrary, public testing::WithParamInterface<LibraryKind> {};

TEST_P(EveryRelease, isRead) {
  MadeLibrary library(package_, GetParam());
  library.addAlbum({.key = 10, .title = "album"});
  library.addAsset({.key = 1, .fileName = "1.jpeg", .keywords = {"b", "a"}});
  library.put(1, 10);
  library.close();
  const SqlitePhotoLibrary read(package_, "", "");
  const Result<AlbumList> list = read.albums({});
  ASSERT_TRUE(list) << list.error();
  ASSERT_THAT(list.value().albums, ElementsAre(Album{"album", "UUID-10", 1}));
  const auto pictures = read.pictures(list.value().albums[0], AlbumDetail::Descriptions, {});
  ASSERT_TRUE(pictures) << pictures.error();
  ASSERT_EQ(pictures.value().size(), 1U);
  EXPECT_EQ(pictures.value()[0].path, package_ + "/originals/A/1.jpeg");
  EXPECT_THAT(pictures.value()[0].keywords, ElementsAre("a", "b"));
}

INSTANTIATE_TEST_SUITE_P(
    Known, EveryRelease,
    testing::Values(LibraryKind{"ZGENERICASSET", 26, 34, 37, 13537}, LibraryKind{"ZASSET", 26, 3, 36, 14300},
                    LibraryKind{"ZASSET", 27, 3, 38, 15331}, LibraryKind{"ZASSET", 28, 3, 40, 16320},
                    LibraryKind{"ZASSET", 29, 3, 41, 17599}, LibraryKind{"ZASSET", 30, 3, 47, 18200},
                    LibraryKind{"ZASSET", 31, 3, 48, 18100}, LibraryKind{"ZASSET", 32, 3, 51, 19300},
                    LibraryKind{"ZASSET", 33, 3, 52, 19320}),
    [](const auto& instance) { return "model" + std::to_string(instance.param.modelVersion); });

TEST_F(AlbumsOfLibrary, ofANewerReleaseAreRefused) {
  MadeLibrary(package_, {.modelVersion = 20000}).addAlbum({.key = 10, .title = "album"});
  expectProblem("newer version");
}

TEST_F(AlbumsOfLibrary, withoutTheTablesThatAreKnownAreRefused) {
  MadeLibrary library(package_);
  for (const char* change :
       {"ALTER TABLE ZGENERICALBUM RENAME TO ZCOLLECTION", "ALTER TABLE ZCOLLECTION RENAME TO ZGENERICALBUM;",
        "ALTER TABLE ZASSET RENAME COLUMN ZFILENAME TO ZNAME"}) {
    library.run(change);
  }
  expectProblem("it has no ZASSET as expected");
  library.run("ALTER TABLE ZASSET RENAME COLUMN ZNAME TO ZFILENAME");
  library.run("ALTER TABLE Z_28ASSETS RENAME TO Z_99ASSETS");
  expectProblem("it has no Z_28ASSETS as expected");
  library.run("DELETE FROM Z_PRIMARYKEY WHERE Z_NAME = 'Album'");
  expectProblem("does not say where albums and pictures are");
  library.run("ALTER TABLE ZGENERICALBUM RENAME TO ZCOLLECTION");
  expectProblem("it has no ZGENERICALBUM as expected");
}

TEST_F(AlbumsOfLibrary, ofALibraryThatDoesNotTellItsVersionAreRead) {
  MadeLibrary library(package_);
  library.addAlbum({.key = 10, .title = "album"});
  library.run("UPDATE Z_METADATA SET Z_PLIST = ?1", "bplist00 garbage");
  EXPECT_THAT(names(package_), ElementsAre("album"));
  library.run("DELETE FROM Z_METADATA");
  EXPECT_THAT(names(package_), ElementsAre("album"));
  library.run("DROP TABLE Z_METADATA");
  EXPECT_THAT(names(package_), ElementsAre("album"));
}

TEST_F(AlbumsOfLibrary, needNoMoreThanTheTablesOfAlbumsAndPictures) {
  MadeLibrary library(package_);
  library.addAlbum({.key = 10, .title = "album"});
  library.addAsset({.key = 1, .fileName = "1.jpeg", .caption = "c"});
  library.put(1, 10);
  for (const char* table : {"ZMOMENT", "ZKEYWORD", "ZASSETDESCRIPTION", "ZADDITIONALASSETATTRIBUTES"}) {
    library.run(std::string("DROP TABLE ") + table);
  }
  library.run("ALTER TABLE ZASSET DROP COLUMN ZMOMENT");
  library.run("ALTER TABLE ZASSET DROP COLUMN ZDATECREATED");
  const auto pictures =
      SqlitePhotoLibrary(package_, "", "").pictures({"album", "UUID-10", 1}, AlbumDetail::Descriptions, {});
  ASSERT_TRUE(pictures) << pictures.error();
  ASSERT_EQ(pictures.value().size(), 1U);
  EXPECT_EQ(pictures.value()[0], (AlbumPicture{.path = package_ + "/originals/A/1.jpeg"}));
}

TEST_F(AlbumsOfLibrary, withoutALibraryAreNone) {
  const Result<AlbumList> list = SqlitePhotoLibrary("", folder_.path(), "").albums({});
  ASSERT_TRUE(list);
  EXPECT_FALSE(list.value().foundLibrary);
  EXPECT_THAT(list.value().albums, IsEmpty());
}

TEST_F(AlbumsOfLibrary, areThoseOfTheFirstPackageInThePicturesFolder) {
  MadeLibrary(folder_ / "Photos 10.photoslibrary").addAlbum({.key = 10, .title = "ten"});
  MadeLibrary(folder_ / "Photos 9.photoslibrary").addAlbum({.key = 10, .title = "nine"});
  const Result<AlbumList> list = SqlitePhotoLibrary("", folder_.path(), "").albums({});
  ASSERT_TRUE(list);
  EXPECT_THAT(list.value().albums, ElementsAre(Album{"nine", "UUID-10", 0}));
}

TEST_F(AlbumsOfLibrary, ofALibraryThatIsNotThereAreAProblem) {
  const Result<AlbumList> list = SqlitePhotoLibrary(package_, "", "").albums({});
  ASSERT_FALSE(list);
  EXPECT_THAT(list.error(), HasSubstr("cannot be opened: No such file or directory"));
}

TEST_F(AlbumsOfLibrary, ofAnEmptyDatabaseAreAProblem) {
  MadeLibrary(package_).close();
  std::ofstream(databasePath(), std::ios::trunc).flush();
  expectProblem("its database is empty");
  fs::remove(databasePath());
  sqlite3* connection = nullptr;
  sqlite3_open(databasePath().c_str(), &connection);
  sqlite3_exec(connection, "CREATE TABLE a (b); DROP TABLE a", nullptr, nullptr, nullptr);
  sqlite3_close(connection);
  expectProblem("its database is empty");
}

TEST_F(AlbumsOfLibrary, ofAnEncryptedDatabaseAreAProblem) {
  MadeLibrary(package_).close();
  std::fstream file(databasePath(), std::ios::in | std::ios::out | std::ios::binary);
  std::string noise(static_cast<std::size_t>(fs::file_size(databasePath())), ' ');
  unsigned state = 1;
  for (char& c : noise) c = static_cast<char>((state = state * 1664525U + 1013904223U) >> 24);
  file << noise << std::flush;
  expectProblem("encrypted");
}

TEST_F(AlbumsOfLibrary, ofADamagedDatabaseAreAProblem) {
  MadeLibrary library(package_);
  for (int key = 10; key < 500; ++key) library.addAlbum({.key = key, .title = std::string(50, 'a')});
  library.close();
  const auto size = fs::file_size(databasePath());
  fs::resize_file(databasePath(), size / 2);  // cut short
  expectProblem("its database is damaged");
  fs::resize_file(databasePath(), size);  // the second half is zeros now
  expectProblem("its database is damaged");
}

TEST_F(AlbumsOfLibrary, ofADatabaseThatIsNoFileAreAProblem) {
  fs::create_directories(package_ + "/database");
  ASSERT_EQ(mkfifo(databasePath().c_str(), 0600), 0);
  const Result<AlbumList> list = SqlitePhotoLibrary(package_, "", "").albums({});
  ASSERT_FALSE(list);
  EXPECT_THAT(list.error(), HasSubstr("it is not a file"));
  fs::remove(databasePath());
  fs::create_directories(databasePath());
  EXPECT_FALSE(SqlitePhotoLibrary(package_, "", "").albums({}));
}

TEST_F(AlbumsOfLibrary, endWhenAStopIsRequested) {
  MadeLibrary library(package_);
  library.run(
      "WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 30000)"
      " INSERT INTO ZGENERICALBUM SELECT i, i, i, 2, 0, 2, i, 0, 1 FROM n");
  library.close();
  EXPECT_EQ(names(package_).size(), 29991U);
  std::stop_source stop;
  stop.request_stop();
  const Result<AlbumList> list = SqlitePhotoLibrary(package_, "", "").albums(stop.get_token());
  ASSERT_FALSE(list);
  EXPECT_THAT(list.error(), HasSubstr("broken off"));
}

}  // namespace
}  // namespace lumivane
