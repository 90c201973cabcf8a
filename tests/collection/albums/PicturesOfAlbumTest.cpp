// Which pictures an album has, in which order, and what is known of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

#include "collection/albums/SqlitePhotoLibrary.h"
#include "tests/collection/albums/MadeLibrary.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Album kAlbum{"album", "UUID-10", 0};

class PicturesOfAlbum : public testing::Test {
 protected:
  [[nodiscard]] std::vector<AlbumPicture> pictures(const Album& album = kAlbum) {
    Result<std::vector<AlbumPicture>> read =
        SqlitePhotoLibrary(library_.package(), "", "").pictures(album, AlbumDetail::Descriptions, {});
    EXPECT_TRUE(read) << read.error();
    return read ? std::move(read).value() : std::vector<AlbumPicture>();
  }
  // The names of the files, in order.
  [[nodiscard]] std::vector<std::string> files() {
    std::vector<std::string> names;
    for (const AlbumPicture& picture : pictures())
      names.push_back(fs::path(picture.path).filename().string());
    return names;
  }
  void makeAlbum(int sortKey, int ascending) {
    library_.addAlbum({.key = 10, .title = "album", .sortKey = sortKey, .ascending = ascending});
  }
  // In the album's stored order: late, early, undated, twin of early.
  void addFour() {
    library_.addAsset({.key = 1, .fileName = "late.jpeg", .date = 300, .title = "picture 10"});
    library_.addAsset({.key = 2, .fileName = "early.jpeg", .date = -5.5, .title = "picture 9"});
    library_.addAsset({.key = 3, .fileName = "undated.jpeg"});
    library_.addAsset({.key = 4, .fileName = "twin.jpeg", .date = -5.5, .title = "Apple"});
    for (int key = 1; key <= 4; ++key) library_.put(key, 10);
  }

  const TemporaryFolder folder_;
  MadeLibrary library_{folder_ / "X.photoslibrary"};
};

TEST_F(PicturesOfAlbum, sortedByHandStandInTheStoredOrder) {
  makeAlbum(0, 1);
  addFour();
  EXPECT_THAT(files(), ElementsAre("late.jpeg", "early.jpeg", "undated.jpeg", "twin.jpeg"));
}

TEST_F(PicturesOfAlbum, sortedByHandMayBeTurnedRound) {
  makeAlbum(0, 0);
  addFour();
  EXPECT_THAT(files(), ElementsAre("twin.jpeg", "undated.jpeg", "early.jpeg", "late.jpeg"));
}

TEST_F(PicturesOfAlbum, sortedByDateStandOldestFirst) {
  makeAlbum(1, 1);
  addFour();
  EXPECT_THAT(files(), ElementsAre("undated.jpeg", "early.jpeg", "twin.jpeg", "late.jpeg"));
}

TEST_F(PicturesOfAlbum, sortedByDateMayBeTurnedRound) {
  makeAlbum(1, 0);
  addFour();
  EXPECT_THAT(files(), ElementsAre("late.jpeg", "twin.jpeg", "early.jpeg", "undated.jpeg"));
}

TEST_F(PicturesOfAlbum, sortedByTitleStandAsPeopleSortNames) {
  makeAlbum(5, 1);
  addFour();
  EXPECT_THAT(files(), ElementsAre("undated.jpeg", "twin.jpeg", "early.jpeg", "late.jpeg"));
}

TEST_F(PicturesOfAlbum, sortedByTitleMayBeTurnedRound) {
  makeAlbum(5, 0);
  addFour();
  EXPECT_THAT(files(), ElementsAre("late.jpeg", "early.jpeg", "twin.jpeg", "undated.jpeg"));
}

TEST_F(PicturesOfAlbum, ofAnUnknownOrderStandInTheStoredOrder) {
  makeAlbum(77, 1);
  addFour();
  EXPECT_EQ(files().front(), "late.jpeg");
}

TEST_F(PicturesOfAlbum, haveNothingOfTheTrashAndNoFramesThatNobodyPicked) {
  makeAlbum(0, 1);
  library_.addAsset({.key = 1, .fileName = "trash.jpeg", .trashed = 1});
  library_.addAsset({.key = 2, .fileName = "burst.jpeg", .visibility = 2});
  library_.addAsset({.key = 3, .fileName = "other album.jpeg"});
  library_.addAsset({.key = 4, .fileName = "shown.jpeg"});
  for (int key : {1, 2, 4}) library_.put(key, 10);
  library_.put(3, 11);
  library_.put(99, 10);  // without an asset
  EXPECT_THAT(files(), ElementsAre("shown.jpeg"));
}

TEST_F(PicturesOfAlbum, tellMoviesAndHiddenOnesApart) {
  makeAlbum(0, 1);
  library_.addAsset({.key = 1, .fileName = "1.jpeg"});
  library_.addAsset({.key = 2, .fileName = "2.mov", .kind = 1});
  library_.addAsset({.key = 3, .fileName = "3.jpeg", .hidden = 1});
  library_.addAsset({.key = 4, .fileName = "4.wav", .kind = 2});
  for (int key = 1; key <= 4; ++key) library_.put(key, 10);
  std::vector<std::pair<MediaType, bool>> kinds;
  for (const AlbumPicture& picture : pictures()) kinds.emplace_back(picture.mediaType, picture.hidden);
  EXPECT_THAT(kinds, ElementsAre(std::pair(MediaType::Picture, false), std::pair(MediaType::Movie, false),
                                 std::pair(MediaType::Picture, true), std::pair(MediaType::Other, false)));
}

TEST_F(PicturesOfAlbum, keptInACloudAreNotPresent) {
  makeAlbum(0, 1);
  library_.addAsset({.key = 1, .fileName = "1.jpeg"});
  library_.addAsset({.key = 2, .fileName = "2.jpeg", .hasFile = false});
  library_.addAsset({.key = 3, .fileName = "3.jpeg", .hasFile = false});
  fs::create_directories(library_.package() + "/originals/A/3.jpeg");  // a folder is no picture
  for (int key = 1; key <= 3; ++key) library_.put(key, 10);
  std::vector<bool> present;
  for (const AlbumPicture& picture : pictures()) present.push_back(picture.isPresent);
  EXPECT_THAT(present, ElementsAre(true, false, false));
}

TEST_F(PicturesOfAlbum, haveCommentKeywordsAndPlaces) {
  makeAlbum(0, 1);
  library_.addAsset({.key = 1,
                     .fileName = "1.jpeg",
                     .caption = "Two\nlines",
                     .keywords = {"sea", "beach"},
                     .momentTitle = "Omaha"});
  library_.put(1, 10);
  const std::vector<AlbumPicture> all = pictures();
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].comment, "Two\nlines");
  EXPECT_THAT(all[0].keywords, ElementsAre("beach", "sea"));
  EXPECT_THAT(all[0].places, ElementsAre("Omaha"));
}

TEST_F(PicturesOfAlbum, withoutDescriptionsStandInTheSameOrder) {
  makeAlbum(5, 1);
  addFour();
  library_.run("UPDATE ZASSETDESCRIPTION SET ZLONGDESCRIPTION = 'caption'");
  std::vector<AlbumPicture> expected = pictures();
  for (AlbumPicture& picture : expected) EXPECT_EQ(std::exchange(picture.comment, ""), "caption");
  const auto plain = SqlitePhotoLibrary(library_.package(), "", "").pictures(kAlbum, AlbumDetail::Files, {});
  ASSERT_TRUE(plain) << plain.error();
  EXPECT_EQ(plain.value(), expected);
}

TEST_F(PicturesOfAlbum, takeTheirPlacesFromTheirPositionFirst) {
  makeAlbum(0, 1);
  const std::string archive =
      "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>$top</key><dict><key>root</key><dict>"
      "<key>CF$UID</key><integer>0</integer></dict></dict><key>$objects</"
      "key><array><dict><key>postalAddress</key>"
      "<dict><key>CF$UID</key><integer>1</integer></dict></dict><dict><key>_city</key><dict><key>CF$UID</key>"
      "<integer>2</integer></dict></dict><string>London</string></array></dict></plist>";
  library_.addAsset(
      MadeAsset{.key = 1, .fileName = "1.jpeg", .reverseLocation = archive, .momentTitle = "somewhere else"});
  library_.put(1, 10);
  EXPECT_THAT(pictures().at(0).places, ElementsAre("London"));
}

TEST_F(PicturesOfAlbum, ofAnAlbumThatIsGoneAreAProblem) {
  makeAlbum(0, 1);
  const auto read = SqlitePhotoLibrary(library_.package(), "", "")
                        .pictures({"gone", "UUID-77", 0}, AlbumDetail::Descriptions, {});
  ASSERT_FALSE(read);
  EXPECT_THAT(read.error(), HasSubstr("album gone is gone"));
  EXPECT_FALSE(SqlitePhotoLibrary("", "", "").pictures(kAlbum, AlbumDetail::Descriptions, {}));
}

TEST_F(PicturesOfAlbum, withNamesThatLeadOutOfThePackageHaveNoPath) {
  makeAlbum(0, 1);
  folder_.write("secret.jpeg", "secret");
  library_.addAsset({.key = 1, .fileName = "secret.jpeg", .directory = "../..", .hasFile = false});
  library_.addAsset({.key = 2, .fileName = "../../secret.jpeg", .hasFile = false});
  library_.addAsset({.key = 3, .fileName = "passwd", .directory = "/etc", .hasFile = false});
  library_.addAsset({.key = 4, .fileName = "x", .hasFile = false});
  library_.run(
      "UPDATE ZASSET SET ZFILENAME = CAST(x'612e6a70670061' AS TEXT) WHERE Z_PK = 4");  // a zero byte
  library_.addAsset({.key = 5, .fileName = "x", .hasFile = false});
  library_.run("UPDATE ZASSET SET ZFILENAME = NULL WHERE Z_PK = 5");
  for (int key = 1; key <= 5; ++key) library_.put(key, 10);
  const std::vector<AlbumPicture> all = pictures();
  ASSERT_EQ(all.size(), 5U);
  for (const AlbumPicture& picture : all) {
    EXPECT_EQ(picture.path, "");
    EXPECT_FALSE(picture.isPresent);
  }
}

TEST_F(PicturesOfAlbum, thatWereNeverCopiedIntoThePackageAreFoundWhereTheyAre) {
  makeAlbum(0, 1);
  folder_.write("elsewhere/p.jpg", "picture");
  library_.addAsset({.key = 1,
                     .fileName = "p.jpg",
                     .directory = folder_ / "elsewhere",
                     .savedAssetType = 10,
                     .hasFile = false});
  library_.put(1, 10);
  ASSERT_EQ(pictures().size(), 1U);
  EXPECT_EQ(pictures()[0].path, folder_ / "elsewhere/p.jpg");
  EXPECT_TRUE(pictures()[0].isPresent);
}

}  // namespace
}  // namespace lumivane
