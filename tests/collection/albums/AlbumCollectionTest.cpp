#include "collection/albums/AlbumCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/FakePhotoLibrary.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Entry = RecordingLog::Entry;

const std::string kPackage = "/home/me/Pictures/Photos.photoslibrary/";

AlbumPicture picture(const std::string& name) {
  return {.path = kPackage + "originals/A/" + name};
}

class AlbumCollection : public testing::Test {
 protected:
  CollectedAlbum collect(std::vector<AlbumPicture> members) {
    return collectAlbum("Summer", Result<std::vector<AlbumPicture>>(std::move(members)), log_);
  }
  RecordingLog log_;
};

TEST_F(AlbumCollection, theAlbumsAreNamedAndCountedInTheLog) {
  const auto albums = albumsLoaded(AlbumList{true, {{"Summer", "1", 3}, {"Win\nter", "2", 0}}}, log_);
  EXPECT_THAT(albums, ElementsAre(Album{"Summer", "1", 3}, Album{"Win\nter", "2", 0}));
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"album name = Summer", LogLevel::Information},
                                          Entry{"album name = Win\\x0Ater", LogLevel::Information},
                                          Entry{"num albums = 2", LogLevel::Information}));
}

TEST_F(AlbumCollection, withoutALibraryThereAreNoAlbums) {
  EXPECT_THAT(albumsLoaded(AlbumList{false, {}}, log_), IsEmpty());
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"mediasource = NULL!", LogLevel::Error}));
}

TEST_F(AlbumCollection, aLibraryThatCannotBeReadIsOneLineInTheLog) {
  EXPECT_THAT(albumsLoaded(Error{"it is locked"}, log_), IsEmpty());
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"it is locked", LogLevel::Error}));
}

TEST_F(AlbumCollection, theFirstAlbumOfANameIsTaken) {
  const std::vector<Album> albums{{"a", "1", 0}, {"twin", "2", 0}, {"twin", "3", 0}};
  EXPECT_EQ(findAlbum(albums, "twin", log_), &albums[1]);
  EXPECT_THAT(log_.entries(), IsEmpty());
  EXPECT_EQ(findAlbum(albums, "Twin", log_), nullptr);
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"Could not find album: Twin!", LogLevel::Error}));
}

TEST_F(AlbumCollection, hiddenOnesAndMoviesAreLeftOutAndTheOrderIsKept) {
  AlbumPicture hidden = picture("hidden.jpeg");
  hidden.hidden = true;
  AlbumPicture movie = picture("movie.mov");
  movie.mediaType = MediaType::Movie;
  const CollectedAlbum collected = collect({picture("z.jpeg"), hidden, movie, picture("a.jpeg")});
  EXPECT_EQ(collected.end, AlbumEnd::Collected);
  EXPECT_THAT(collected.imagefiles, ElementsAre(picture("z.jpeg").path, picture("a.jpeg").path));
  EXPECT_EQ(collected.mainDirectoryLocation, kPackage);
  EXPECT_THAT(log_.entries(),
              ElementsAre(Entry{"Album images path prefix = " + kPackage + ".", LogLevel::Information}));
}

TEST_F(AlbumCollection, missingFilesAreLeftOutWithOneCount) {
  AlbumPicture inCloud = picture("cloud.jpeg");
  inCloud.isPresent = false;
  AlbumPicture hiddenInCloud = inCloud;
  hiddenInCloud.hidden = true;
  const AlbumPicture nameless{.path = ""};
  const CollectedAlbum collected = collect({inCloud, picture("a.jpeg"), nameless, hiddenInCloud});
  EXPECT_THAT(collected.imagefiles, ElementsAre(picture("a.jpeg").path));
  EXPECT_EQ(collected.numMissing, 2U);
  EXPECT_THAT(log_.entries().at(0),
              (Entry{"pictures of album Summer left out because their files are not here = 2",
                     LogLevel::Information}));
  EXPECT_EQ(log_.entries().size(), 2U);
}

TEST_F(AlbumCollection, anAlbumWithoutPicturesIsEmpty) {
  const CollectedAlbum collected = collect({});
  EXPECT_EQ(collected.end, AlbumEnd::Empty);
  EXPECT_THAT(collected.imagefiles, IsEmpty());
  EXPECT_THAT(log_.entries(), IsEmpty());
}

TEST_F(AlbumCollection, picturesOutsideAnyLibraryAreNotCollected) {
  const CollectedAlbum collected = collect({{.path = "/home/me/a.jpeg"}, picture("b.jpeg")});
  EXPECT_EQ(collected.end, AlbumEnd::OutsideLibrary);
  EXPECT_THAT(collected.imagefiles, IsEmpty());
  EXPECT_EQ(collected.mainDirectoryLocation, "");
  EXPECT_THAT(log_.entries(),
              ElementsAre(Entry{"Could not find '.photoslibrary' in path of photos!", LogLevel::Error}));
}

TEST_F(AlbumCollection, theFirstPictureDecidesWhetherTheyLieInALibrary) {
  const CollectedAlbum collected = collect({picture("b.jpeg"), {.path = "/home/me/a.jpeg"}});
  EXPECT_EQ(collected.end, AlbumEnd::Collected);
  EXPECT_THAT(collected.imagefiles, ElementsAre(picture("b.jpeg").path, "/home/me/a.jpeg"));
}

TEST_F(AlbumCollection, anAlbumThatCannotBeReadIsOneLineInTheLog) {
  const CollectedAlbum collected = collectAlbum("Summer", Error{"it is damaged"}, log_);
  EXPECT_EQ(collected.end, AlbumEnd::Unreadable);
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"it is damaged", LogLevel::Error}));
}

TEST_F(AlbumCollection, theWholeWayFromALibraryToItsPictures) {
  FakePhotoLibrary library;
  library.list.albums = {{"Summer", "1", 1}};
  library.members["1"] = {picture("a.jpeg")};
  const std::vector<Album> albums = albumsLoaded(library.albums({}), log_);
  const Album* album = findAlbum(albums, "Summer", log_);
  ASSERT_NE(album, nullptr);
  const auto members = library.pictures(*album, AlbumDetail::Files, {});
  EXPECT_THAT(collectAlbum(album->name, members, log_).imagefiles, ElementsAre(picture("a.jpeg").path));
  library.problem = "it is locked";
  EXPECT_EQ(collectAlbum("Summer", library.pictures(*album, AlbumDetail::Files, {}), log_).end,
            AlbumEnd::Unreadable);
}

TEST(PictureDescription, joinsCommentKeywordsAndPlaces) {
  EXPECT_EQ(
      pictureDescription({.comment = "A dog", .keywords = {"dog", "sea"}, .places = {"Kiel", "Germany"}}),
      "A dog. dog, sea. Kiel, Germany");
  EXPECT_EQ(pictureDescription({.keywords = {"dog"}, .places = {"Kiel"}}), "dog. Kiel");
  EXPECT_EQ(pictureDescription({.places = {"Kiel"}}), "Kiel");
  EXPECT_EQ(pictureDescription({.comment = "A dog"}), "A dog");
  EXPECT_EQ(pictureDescription({}), std::nullopt);
}

TEST(PictureDescription, everyLineEndBecomesAComma) {
  EXPECT_EQ(pictureDescription({.comment = "a\r\nb\nc\rd"}), "a,,b,c,d");
}

TEST(ListImages, namesTheFirstNineHundred) {
  RecordingLog log;
  std::vector<std::string> paths{"/a.jpeg", "/b\n.jpeg"};
  listImages(paths, log);
  EXPECT_THAT(log.entries(), ElementsAre(Entry{"List of Images (2)", LogLevel::Information},
                                         Entry{"0. file = /a.jpeg", LogLevel::Information},
                                         Entry{"1. file = /b\\x0A.jpeg", LogLevel::Information}));
  log.clear();
  paths.resize(1000, "/c.jpeg");
  listImages(paths, log);
  EXPECT_EQ(log.entries().size(), 901U);
  EXPECT_EQ(log.entries().front().text, "List of Images (1000)");
  EXPECT_EQ(log.entries().back().text, "899. file = /c.jpeg");
}

}  // namespace
}  // namespace lumivane
