#include "tools/SettingText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "collection/FolderBookmarks.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

class SettingTextTest : public testing::Test {
 protected:
  [[nodiscard]] bool set(const char* key, std::string_view text) {
    return setFromText(*findSetting(key), text, settings_).ok();
  }
  [[nodiscard]] std::string shown(const char* key) const { return settingText(*findSetting(key), settings_); }
  [[nodiscard]] std::optional<std::string> objection(const char* key) const {
    return sheetObjection(*findSetting(key), settings_);
  }

  DisplaySettings settings_;
};

TEST_F(SettingTextTest, WholeNumbersMustFit) {
  EXPECT_TRUE(set("DurationPerImage", "-7"));
  EXPECT_EQ(shown("DurationPerImage"), "-7");
  EXPECT_TRUE(set("ExcludeSize", "4294967295"));
  EXPECT_EQ(shown("ExcludeSize"), "4294967295");
  for (const char* text : {"", " 5", "5 ", "5.5", "2147483648", "five", "0x10"}) {
    EXPECT_FALSE(set("DurationPerImage", text)) << text;
  }
  for (const char* text : {"-1", "4294967296"}) EXPECT_FALSE(set("ExcludeSize", text)) << text;
  EXPECT_EQ(settings_.durationPerImage_, -7);
}

TEST_F(SettingTextTest, NumbersAreShownAsShortAsTheyGo) {
  EXPECT_TRUE(set("InitZoomInFactor", "1.3"));
  EXPECT_EQ(shown("InitZoomInFactor"), "1.3");
  for (const char* text : {"", "nan", "inf", "1,3", "1e300", "x"})
    EXPECT_FALSE(set("InitZoomInFactor", text)) << text;
}

TEST_F(SettingTextTest, TruthsHaveSeveralNames) {
  for (const char* text : {"true", "YES", "On", "1"}) {
    settings_.zoomIsOn_ = false;
    EXPECT_TRUE(set("ZoomIsOn", text)) << text;
    EXPECT_EQ(shown("ZoomIsOn"), "true");
  }
  for (const char* text : {"false", "No", "OFF", "0"}) {
    settings_.zoomIsOn_ = true;
    EXPECT_TRUE(set("ZoomIsOn", text)) << text;
    EXPECT_EQ(shown("ZoomIsOn"), "false");
  }
  for (const char* text : {"", "2", "maybe"}) EXPECT_FALSE(set("ZoomIsOn", text)) << text;
}

TEST_F(SettingTextTest, PatternsAreLines) {
  EXPECT_TRUE(set("SkipPatterns", ".*/a\n\n .*\\.png"));
  EXPECT_THAT(settings_.skipPatterns_, ElementsAre(".*/a", "", " .*\\.png"));
  EXPECT_EQ(shown("SkipPatterns"), ".*/a\n\n .*\\.png");
  EXPECT_FALSE(set("SkipPatterns", "\xFF"));
  EXPECT_FALSE(set("SelectedAlbum", "\x1B[31m"));
}

TEST_F(SettingTextTest, BookmarksAreShownAsFoldersAndCannotBeSet) {
  settings_.directoryBookmarks_ = emptyBookmarks();
  EXPECT_EQ(shown("ImageDirectoryBookmarks"), "");
  settings_.directoryBookmarks_ = {writeBookmark({"/pictures/a\nb", {}}), "garbage",
                                   writeBookmark({"/two", {}})};
  EXPECT_EQ(shown("ImageDirectoryBookmarks"), "/pictures/a\\x0Ab\n(not a bookmark)\n/two");
  EXPECT_FALSE(set("ImageDirectoryBookmarks", "/pictures"));
  EXPECT_EQ(settings_.directoryBookmarks_.size(), 3U);
}

TEST_F(SettingTextTest, WhatTheSheetWouldRefuseIsTold) {
  const auto objects = [&](const char* key, const char* text) {
    EXPECT_TRUE(set(key, text));
    return objection(key).has_value();
  };
  EXPECT_TRUE(objects("DurationPerImage", "3"));
  EXPECT_FALSE(objects("DurationPerImage", "4"));
  EXPECT_TRUE(objects("InitZoomInFactor", "1.0"));
  EXPECT_FALSE(objects("InitZoomInFactor", "1.1"));
  EXPECT_TRUE(objects("ExcludeSize", "49"));
  EXPECT_FALSE(objects("ExcludeSize", "50"));
  EXPECT_FALSE(objects("ExcludekB", "0"));
  EXPECT_TRUE(objects("FontSize", "9"));
  EXPECT_FALSE(objects("FontSize", "10"));
  EXPECT_FALSE(objects("FontSize", "72"));
  EXPECT_TRUE(objects("FontSize", "73"));
  EXPECT_TRUE(objects("InfoDelay", "-1"));
}

TEST_F(SettingTextTest, TheDelayIsAtMostHalfTheDuration) {
  settings_.durationPerImage_ = 7;
  settings_.infoDelay_ = 3;
  EXPECT_EQ(objection("InfoDelay"), std::nullopt);
  settings_.infoDelay_ = 4;
  EXPECT_THAT(objection("InfoDelay"), Optional(HasSubstr("half")));
  EXPECT_THAT(objection("DurationPerImage"), Optional(HasSubstr("half")));
  EXPECT_EQ(objection("FontSize").has_value(), true);  // 0 points
}

TEST_F(SettingTextTest, ZoomAndPanExcludeEachOther) {
  settings_.zoomIsOn_ = true;
  EXPECT_EQ(objection("ZoomIsOn"), std::nullopt);
  settings_.kenBurnsIsOn_ = true;
  EXPECT_NE(objection("ZoomIsOn"), std::nullopt);
  EXPECT_NE(objection("KenBurnsIsOn"), std::nullopt);
}

}  // namespace
}  // namespace lumivane
