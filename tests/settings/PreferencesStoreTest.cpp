#include "settings/PreferencesStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using Entry = RecordingLog::Entry;
constexpr auto kInformation = LogLevel::Information;
constexpr auto kError = LogLevel::Error;

class PreferencesStoreTest : public testing::Test {
 protected:
  MemoryFiles files_;
  RecordingLog log_;
  SettingsStore store_{files_, log_, "/config"};
  PreferencesStore preferences_{store_, log_};
};

TEST_F(PreferencesStoreTest, LoadingSaysFromWhere) {
  EXPECT_EQ(preferences_.load("Color LCD").durationPerImage_, 60);
  EXPECT_THAT(log_.entries(),
              ElementsAre(Entry{"Loading defaults from de.orvik.LumivaneApp.Color LCD", kInformation}));
  EXPECT_EQ(files_.writes, 0);
}

TEST_F(PreferencesStoreTest, TheBookmarkDefaultIsTheCallers) {
  EXPECT_THAT(preferences_.load("A").directoryBookmarks_, ElementsAre(""));
  EXPECT_THAT(preferences_.load("A", {"none yet"}).directoryBookmarks_, ElementsAre("none yet"));
}

TEST_F(PreferencesStoreTest, SavingSaysSo) {
  DisplaySettings settings = preferences_.load("A");
  log_.clear();
  settings.fontSize_ = 40;
  EXPECT_TRUE(preferences_.save(settings));
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"writing defaults (display name = A)", kInformation}));
  EXPECT_EQ(preferences_.load("A").fontSize_, 40U);
}

TEST_F(PreferencesStoreTest, SavingTheSameAgainWritesNothing) {
  const DisplaySettings settings = preferences_.load("A");
  EXPECT_TRUE(preferences_.save(settings));
  EXPECT_TRUE(preferences_.save(settings));
  EXPECT_EQ(files_.writes, 1);
}

TEST_F(PreferencesStoreTest, AFailedFlushIsAnErrorBeforeTheUsualLine) {
  const DisplaySettings settings = preferences_.load("A");
  files_.unwritable.insert("/config/de.orvik.LumivaneApp.A.plist");
  log_.clear();
  EXPECT_FALSE(preferences_.save(settings));
  EXPECT_THAT(
      log_.entries(),
      ElementsAre(Entry{"settings not written: /config/de.orvik.LumivaneApp.A.plist: No space left on device",
                        kError},
                  Entry{"writing defaults failed! (display name = A)", kError},
                  Entry{"writing defaults (display name = A)", kInformation}));
}

TEST_F(PreferencesStoreTest, AnotherDisplayReplacesTheOneBefore) {
  DisplaySettings settings = preferences_.load("A");
  settings = preferences_.load("B");
  settings.fontSize_ = 40;
  EXPECT_TRUE(preferences_.save(settings));
  EXPECT_EQ(preferences_.load("A").fontSize_, 20U);
  EXPECT_EQ(preferences_.load("B").fontSize_, 40U);
}

TEST_F(PreferencesStoreTest, WithoutAPlaceForSettingsEverythingIsZero) {
  SettingsStore nowhere(files_, log_, "");
  PreferencesStore preferences(nowhere, log_);
  EXPECT_EQ(preferences.load("A"), DisplaySettings{});
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"Loading defaults from de.orvik.LumivaneApp.A", kInformation},
                                          Entry{"Could not create a defaults object!!", kError},
                                          Entry{"writing defaults failed! (display name = A)", kError}));
  log_.clear();
  EXPECT_FALSE(preferences.save(DisplaySettings{}));
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"writing defaults failed! (display name = A)", kError},
                                          Entry{"writing defaults (display name = A)", kInformation}));
  EXPECT_EQ(files_.writes, 0);
}

TEST_F(PreferencesStoreTest, ControlCharactersOfANameDoNotReachTheLog) {
  EXPECT_EQ(preferences_.load("a\nb").durationPerImage_, 60);
  EXPECT_EQ(log_.count("Loading defaults from de.orvik.LumivaneApp.a\\x0Ab"), 1U);
}

}  // namespace
}  // namespace lumivane
