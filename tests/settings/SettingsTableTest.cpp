#include "settings/SettingsTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace lumivane {
namespace {

using testing::ElementsAre;
using Integer = std::int64_t;

TEST(SettingsTable, HoldsTwentyFourKeysOnce) {
  std::set<std::string_view> keys;
  for (const SettingRow& row : settingsTable()) {
    keys.insert(row.key);
    EXPECT_FALSE(row.meaning.empty()) << row.key;
  }
  EXPECT_EQ(keys.size(), 24U);
}

TEST(SettingsTable, DefaultsAreThese) {
  const PropertyListDictionary expected{
      {"ImageDirectoryBookmarks", PropertyListArray{PropertyListData{}}},
      {"DurationPerImage", Integer{60}},
      {"InitZoomInFactor", static_cast<double>(1.3F)},
      {"ExcludeSize", Integer{300}},
      {"ExcludekB", Integer{5}},
      {"ShowImagePath", true},
      {"UseSpotlight", true},
      {"DisplayFilename", true},
      {"ZoomIsOn", false},
      {"KenBurnsIsOn", true},
      {"FontSize", Integer{20}},
      {"InfoDelay", Integer{0}},
      {"UseAlbum", false},
      {"SkipPatterns", std::string(".*/thumb.*")},
      {"DontRandomize", false},
      {"StartWithRandom", false},
      {"AllowBlackBorders", true},
      {"BlackBorderAvoidance", 0.0},
      {"CrossDissolve", true},
      {"CrossDissolveDuration", 5.0},
      {"ShowFileExtension", true},
      {"ShowImageInfo", true},
      {"SelectedAlbum", std::string()},
      {"EnableDeleteAtRuntime", false},
  };
  EXPECT_EQ(registeredDefaults(emptyBookmarkList()), expected);
}

TEST(SettingsTable, TheDefaultBookmarksAreTheCallers) {
  const PropertyListDictionary defaults = registeredDefaults({"one", "two"});
  EXPECT_EQ(defaults.at("ImageDirectoryBookmarks"),
            PropertyList(PropertyListArray{PropertyListData{"one"}, PropertyListData{"two"}}));
}

TEST(SettingsTable, TypesFitTheirFieldsAndDefaults) {
  for (const SettingRow& row : settingsTable()) {
    const bool fieldIsInteger = row.field.index() <= 1;
    EXPECT_EQ(row.type == SettingType::Integer, fieldIsInteger) << row.key;
    EXPECT_EQ(row.type == SettingType::Integer, std::holds_alternative<Integer>(row.registeredDefault))
        << row.key;
    EXPECT_EQ(row.type == SettingType::Float, std::holds_alternative<float>(row.registeredDefault))
        << row.key;
    EXPECT_EQ(row.type == SettingType::Bool, std::holds_alternative<bool>(row.registeredDefault)) << row.key;
  }
}

TEST(SettingsTable, KeysAreFoundByTheirExactName) {
  ASSERT_NE(findSetting("FontSize"), nullptr);
  EXPECT_EQ(findSetting("FontSize")->key, "FontSize");
  EXPECT_EQ(findSetting("fontsize"), nullptr);
  EXPECT_EQ(findSetting(""), nullptr);
}

TEST(SettingsTable, LinesAreSplitAtEveryLineFeed) {
  EXPECT_THAT(linesOf(""), ElementsAre(""));
  EXPECT_THAT(linesOf("a"), ElementsAre("a"));
  EXPECT_THAT(linesOf("a\n\nb"), ElementsAre("a", "", "b"));
  EXPECT_THAT(linesOf(" a \n"), ElementsAre(" a ", ""));
  EXPECT_THAT(linesOf("a\r\nb"), ElementsAre("a\r", "b"));
}

TEST(SettingsTable, JoiningUndoesSplitting) {
  for (const char* text : {"", "a", "a\n\nb", "\n", " a \n"}) EXPECT_EQ(joinedLines(linesOf(text)), text);
  EXPECT_EQ(joinedLines({}), "");
  EXPECT_EQ(joinedLines({"same", "same"}), "same\nsame");
}

}  // namespace
}  // namespace lumivane
