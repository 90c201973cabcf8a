#include "collection/albums/AlbumChoice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::IsEmpty;

const std::vector<Album> kAlbums{{"Summer", "1", 0}, {"Winter", "2", 0}};
const AlbumControls kForAlbums{.directoryTreeIsOn = false, .albumIsOn = true, .folderSettingsEnabled = false};
const AlbumControls kForFolders{.directoryTreeIsOn = true, .albumIsOn = false, .folderSettingsEnabled = true};

TEST(AlbumChoice, theAlbumsCanBeChosenWhereThereAreSome) {
  RecordingLog log;
  const AlbumAction action = setUseAlbum({false, "Summer"}, kAlbums, log);
  EXPECT_EQ(action.choice, (AlbumChoice{true, ""}));
  EXPECT_EQ(action.controls, kForAlbums);
  EXPECT_FALSE(action.needsRescan) << "not before an album is picked";
  EXPECT_THAT(log.entries(), IsEmpty());
}

TEST(AlbumChoice, withoutAlbumsTheButtonIsSetBack) {
  RecordingLog log;
  const AlbumAction action = setUseAlbum({false, "Summer"}, {}, log);
  EXPECT_EQ(action.choice, (AlbumChoice{false, ""}));
  EXPECT_EQ(action.controls, kForFolders);
  EXPECT_TRUE(log.has("No albums were found at startup time!", LogLevel::Error));
}

TEST(AlbumChoice, theFolderTreeIsCollectedAnewAfterAnAlbum) {
  const AlbumAction back = setUseDirectoryTree({true, "Summer"});
  EXPECT_EQ(back.choice, (AlbumChoice{false, "Summer"}));
  EXPECT_EQ(back.controls, kForFolders);
  EXPECT_TRUE(back.needsRescan);
  EXPECT_FALSE(setUseDirectoryTree({false, ""}).needsRescan);
}

TEST(AlbumChoice, anAlbumIsPickedOnce) {
  const AlbumAction first = selectAlbum({false, ""}, kAlbums, 1);
  EXPECT_EQ(first.choice, (AlbumChoice{true, "Winter"}));
  EXPECT_EQ(first.controls, kForAlbums);
  EXPECT_TRUE(first.needsRescan);
  const AlbumAction again = selectAlbum(first.choice, kAlbums, 1);
  EXPECT_EQ(again.choice, first.choice);
  EXPECT_EQ(again.controls, std::nullopt);
  EXPECT_FALSE(again.needsRescan);
}

TEST(AlbumChoice, withoutASelectedRowNoAlbumIsChosen) {
  for (const long row : {-1L, 3L, 1000000L}) {
    const AlbumAction action = selectAlbum({true, "Summer"}, kAlbums, row);
    EXPECT_EQ(action.choice, AlbumChoice{}) << row;
    EXPECT_EQ(action.controls, std::nullopt);
    EXPECT_FALSE(action.needsRescan);
  }
}

TEST(AlbumChoice, theBlankRowChangesNothing) {
  EXPECT_EQ(selectAlbum({false, ""}, {}, 0).choice, AlbumChoice{});
  EXPECT_EQ(selectAlbum({true, "Summer"}, kAlbums, 2).choice, (AlbumChoice{true, "Summer"}));
}

TEST(AlbumTable, showsTheNames) {
  EXPECT_EQ(numberOfRowsInAlbumTable(kAlbums), 2U);
  EXPECT_EQ(textOfAlbumRow(kAlbums, 1), "Winter");
  EXPECT_EQ(textOfAlbumRow({{"a\nb", "1", 0}}, 0), "a\\x0Ab");
}

TEST(AlbumTable, hasOneBlankRowWithoutAlbums) {
  EXPECT_EQ(numberOfRowsInAlbumTable({}), 1U);
  EXPECT_EQ(textOfAlbumRow({}, 0), " ");
}

}  // namespace
}  // namespace lumivane
