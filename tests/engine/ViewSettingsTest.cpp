#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

using ViewSettingsTest = ViewTest;

TEST_F(ViewSettingsTest, aDisplayNeverSeenBeforeHasTheDefaultsAndAsksForAFolder) {
  displays.all = {{1, "New", {1920, 1080}, 1}};
  start();
  EXPECT_EQ(view->settings().durationPerImage_, 60);
  EXPECT_EQ(view->settings().skipPatterns_, std::vector<std::string>{".*/thumb.*"});
  EXPECT_EQ(view->settings().directoryBookmarks_, emptyBookmarks());
  EXPECT_TRUE(view->settings().kenBurnsIsOn_);
  EXPECT_EQ(view->firstLine(), "Change pics folder in Preferences for monitor New");
  EXPECT_TRUE(log.has("Loading defaults from de.orvik.LumivaneApp.New", LogLevel::Information));
  EXPECT_TRUE(log.has("duration per image = 60", LogLevel::Information));
}

TEST_F(ViewSettingsTest, aStoredAlbumIsNamedAndStillOff) {
  configure([](DisplaySettings& s) {
    s.useAlbum_ = true;
    s.selectedAlbum_ = "Summer";
  });
  start();
  EXPECT_TRUE(log.has("Selected Album = Summer", LogLevel::Information));
  EXPECT_FALSE(view->settings().useAlbum_);
  EXPECT_EQ(log.countStartingWith("Directory location"), 0U);
}

TEST_F(ViewSettingsTest, aFolderThatIsGoneIsMissed) {
  listPictures(2);
  std::filesystem::remove_all(pictureFolder.path());
  start();
  EXPECT_EQ(log.count("Bookmark not resolvable!"), 1U);
  EXPECT_TRUE(log.has("Orig path: " + pictureFolder.path(), LogLevel::Error));
  EXPECT_EQ(log.count("Rescan the pictures folder (some sub-folders seem to have moved)!"), 1U);
  EXPECT_EQ(view->firstLine(), "Change pics folder in Preferences for monitor Color LCD");
}

TEST_F(ViewSettingsTest, savesWhatItLoaded) {
  start();
  view->saveConfig();
  EXPECT_TRUE(log.has("writing defaults (display name = Color LCD)", LogLevel::Information));
}

TEST_F(ViewSettingsTest, theFirstStartBeginsARecordAndListOrderAtOne) {
  configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
  listPictures(5);
  start();
  EXPECT_TRUE(files.content.contains("/data/LumivaneLastRunInfo.Color LCD.plist"));
  beat();
  EXPECT_EQ(view->filename(), path(1));
}

TEST_F(ViewSettingsTest, listOrderGoesOnWhereItStopped) {
  configure([](DisplaySettings& s) { s.dontRandomize_ = true; });
  listPictures(10);
  start();
  beat();
  runUntilChange();
  runUntilChange();
  const std::string last = view->filename();
  view.reset();  // without a word of farewell, as after a crash
  start();
  beat();
  EXPECT_EQ(view->filename(), last);
}

TEST_F(ViewSettingsTest, randomStartDrawsFromTheList) {
  configure([](DisplaySettings& s) {
    s.dontRandomize_ = true;
    s.startWithRandom_ = true;
  });
  listPictures(10);
  random.script = {23};
  start();
  EXPECT_EQ(view->imageIndex(), 3U);
}

TEST_F(ViewSettingsTest, randomStartWithAnEmptyListKeepsZero) {
  configure([](DisplaySettings& s) { s.startWithRandom_ = true; });
  start();
  EXPECT_EQ(view->imageIndex(), 0U);
}

TEST_F(ViewSettingsTest, aDamagedRecordIsLeftAlone) {
  listPictures(3);
  const std::string record = "/data/LumivaneLastRunInfo.Color LCD.plist";
  files.content[record] = "rubbish";
  start();
  EXPECT_EQ(log.countStartingWith("Could not read LastRunInfo from " + record), 1U);
  view->stopAnimation();
  EXPECT_EQ(files.content[record], "rubbish");
}

TEST_F(ViewSettingsTest, theListIsReadAndCounted) {
  listPictures(4);
  start();
  EXPECT_EQ(view->imageFiles().size(), 4U);
  EXPECT_TRUE(log.has("load images from: /data/LumivaneImageList.Color LCD.plist", LogLevel::Information));
  EXPECT_TRUE(log.has("num images from config = 4", LogLevel::Information));
}

}  // namespace
}  // namespace lumivane
