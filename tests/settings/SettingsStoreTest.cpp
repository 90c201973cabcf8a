#include "settings/SettingsStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "settings/SettingsTable.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using Integer = std::int64_t;

DisplaySettings unlikeAnyDefault() {
  DisplaySettings settings;
  settings.directoryBookmarks_ = {"one", std::string("\0two\xFF", 5)};
  settings.durationPerImage_ = -7;
  settings.initZoomInFactor_ = 2.25F;
  settings.excludeSize_ = 4294967291U;  // what a sheet makes of -5
  settings.excludekB_ = 77;
  settings.zoomIsOn_ = true;
  settings.fontSize_ = 11;
  settings.infoDelay_ = 9;
  settings.useAlbum_ = true;
  settings.skipPatterns_ = {"a", "", " b "};
  settings.dontRandomize_ = true;
  settings.startWithRandom_ = true;
  settings.blackBorderAvoidance_ = 0.1F;
  settings.crossDissolveDuration_ = 3.3F;
  settings.selectedAlbum_ =
      "Gr\xC3\xBC\xC3\x9F"
      "e";
  settings.enableDeleteAtRuntime_ = true;
  return settings;
}

class SettingsStoreTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<SettingsDomain> open(const std::string& display) {
    auto domain = store_.defaultsForModuleWithName(settingsDomainName(display));
    domain->registerDefaults(registeredDefaults(emptyBookmarkList()));
    return domain;
  }
  // The settings read from a file that holds these values.
  [[nodiscard]] DisplaySettings settingsFrom(const PropertyListDictionary& stored) {
    files_.content["/config/de.orvik.LumivaneApp.A.plist"] = writePropertyListXml(stored).value();
    return loadSettings(open("A").get());
  }

  MemoryFiles files_;
  RecordingLog log_;
  SettingsStore store_{files_, log_, "/config"};
};

TEST_F(SettingsStoreTest, EveryDisplayHasAFileOfItsOwn) {
  EXPECT_EQ(settingsDomainName("Color LCD"), "de.orvik.LumivaneApp.Color LCD");
  EXPECT_EQ(open("Color LCD")->path(), "/config/de.orvik.LumivaneApp.Color LCD.plist");
  EXPECT_EQ(open("../x")->path(), "/config/de.orvik.LumivaneApp.%2E.%2Fx.plist");
  EXPECT_EQ(open("")->path(), "/config/de.orvik.LumivaneApp.%empty.plist");
  EXPECT_EQ(store_.defaultsForModuleWithName("other")->path(), "/config/other.plist");
}

TEST_F(SettingsStoreTest, FileNamesStayWithinTheLimit) {
  const std::string path = open(std::string(5000, 'n'))->path() + ".damaged-100";
  EXPECT_LE(path.size() - std::string("/config/").size(), 255U);
}

TEST_F(SettingsStoreTest, WithoutAFolderThereIsNoDomain) {
  EXPECT_EQ(SettingsStore(files_, log_, "").defaultsForModuleWithName("x"), nullptr);
}

TEST_F(SettingsStoreTest, ADisplayNeverSeenBeforeHasTheDefaults) {
  const DisplaySettings settings = loadSettings(open("A").get());
  DisplaySettings expected;
  expected.directoryBookmarks_ = {""};
  expected.durationPerImage_ = 60;
  expected.initZoomInFactor_ = 1.3F;
  expected.excludeSize_ = 300;
  expected.excludekB_ = 5;
  expected.showImagePath_ = expected.useSpotlight_ = expected.displayFilename_ = expected.kenBurnsIsOn_ =
      true;
  expected.fontSize_ = 20;
  expected.skipPatterns_ = {".*/thumb.*"};
  expected.allowBlackBorders_ = expected.crossDissolve_ = true;
  expected.crossDissolveDuration_ = 5.0F;
  expected.showFileExtension_ = expected.showImageInfo_ = true;
  EXPECT_EQ(settings, expected);
}

TEST_F(SettingsStoreTest, WithoutADomainEverythingIsZero) {
  EXPECT_EQ(loadSettings(nullptr), DisplaySettings{});
}

TEST_F(SettingsStoreTest, EverySettingSurvivesAFile) {
  const auto domain = open("A");
  saveSettings(*domain, unlikeAnyDefault());
  EXPECT_TRUE(domain->synchronize());
  EXPECT_EQ(loadSettings(open("A").get()), unlikeAnyDefault());
}

TEST_F(SettingsStoreTest, AllKeysAreStored) {
  const auto domain = open("A");
  saveSettings(*domain, loadSettings(domain.get()));
  EXPECT_TRUE(domain->synchronize());
  const PropertyList list = parsePropertyList(files_.content.at(domain->path())).value();
  ASSERT_NE(list.as<PropertyListDictionary>(), nullptr);
  EXPECT_EQ(list.as<PropertyListDictionary>()->size(), kSettingCount);
  EXPECT_EQ(list.as<PropertyListDictionary>()->at("SkipPatterns"), PropertyList(std::string(".*/thumb.*")));
}

TEST_F(SettingsStoreTest, DisplaysDoNotShareTheirSettings) {
  const auto domain = open("A");
  domain->setInteger("FontSize", 50);
  EXPECT_TRUE(domain->synchronize());
  EXPECT_EQ(loadSettings(open("B").get()).fontSize_, 20U);
}

TEST_F(SettingsStoreTest, PatternsAreSplitAtEveryLineFeedAndNothingIsTrimmed) {
  EXPECT_THAT(settingsFrom({{"SkipPatterns", std::string("one\n\ntwo")}}).skipPatterns_,
              ElementsAre("one", "", "two"));
  EXPECT_THAT(settingsFrom({{"SkipPatterns", std::string(" one \n")}}).skipPatterns_,
              ElementsAre(" one ", ""));
  EXPECT_THAT(settingsFrom({{"SkipPatterns", std::string()}}).skipPatterns_, ElementsAre(""));
}

TEST_F(SettingsStoreTest, LoadingNeverClamps) {
  const DisplaySettings settings = settingsFrom({{"DurationPerImage", Integer{-3}},
                                                 {"InitZoomInFactor", 0.5},
                                                 {"ExcludeSize", Integer{1}},
                                                 {"FontSize", Integer{1000}},
                                                 {"InfoDelay", Integer{-1}},
                                                 {"ZoomIsOn", true},
                                                 {"KenBurnsIsOn", true}});
  EXPECT_EQ(settings.durationPerImage_, -3);
  EXPECT_EQ(settings.initZoomInFactor_, 0.5F);
  EXPECT_EQ(settings.excludeSize_, 1U);
  EXPECT_EQ(settings.fontSize_, 1000U);
  EXPECT_EQ(settings.infoDelay_, -1);
  EXPECT_TRUE(settings.zoomIsOn_ && settings.kenBurnsIsOn_);
}

TEST_F(SettingsStoreTest, IntegersSaturateToTheirFields) {
  const DisplaySettings large = settingsFrom({{"DurationPerImage", Integer{1} << 40}, {"ExcludeSize", 1e20}});
  EXPECT_EQ(large.durationPerImage_, std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(large.excludeSize_, std::numeric_limits<std::uint32_t>::max());
  const DisplaySettings small = settingsFrom({{"DurationPerImage", -1e20}, {"ExcludeSize", Integer{-5}}});
  EXPECT_EQ(small.durationPerImage_, std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(small.excludeSize_, 0U);
}

TEST_F(SettingsStoreTest, WronglyTypedValuesAreReadAsWellAsTheyGo) {
  const DisplaySettings settings = settingsFrom({{"DurationPerImage", std::string("30")},
                                                 {"FontSize", 24.9},
                                                 {"InitZoomInFactor", Integer{2}},
                                                 {"ShowImagePath", Integer{0}},
                                                 {"ZoomIsOn", std::string("1")},
                                                 {"InfoDelay", PropertyListArray{}},
                                                 {"SelectedAlbum", true},
                                                 {"ImageDirectoryBookmarks", std::string("/pictures")}});
  EXPECT_EQ(settings.durationPerImage_, 30);
  EXPECT_EQ(settings.fontSize_, 24U);
  EXPECT_EQ(settings.initZoomInFactor_, 2.0F);
  EXPECT_FALSE(settings.showImagePath_);
  EXPECT_TRUE(settings.zoomIsOn_);
  EXPECT_EQ(settings.infoDelay_, 0);
  EXPECT_EQ(settings.selectedAlbum_, "");
  EXPECT_THAT(settings.directoryBookmarks_, ElementsAre(""));
}

}  // namespace
}  // namespace lumivane
