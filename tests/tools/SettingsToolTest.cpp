#include <fstream>

#include "tests/tools/LumivaneToolFixture.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

using SettingsTool = LumivaneTool;

TEST_F(SettingsTool, ListsEverySettingOnItsLine) {
  const ProgramAnswer answer = run({"settings", "--display=D"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(std::count(answer.out.begin(), answer.out.end(), '\n'), 24);
  EXPECT_THAT(answer.out, HasSubstr("DurationPerImage = 60\nInitZoomInFactor = 1.3\nExcludeSize = 300\n"));
  EXPECT_FALSE(fs::exists(settingsFile("D")));
}

TEST_F(SettingsTool, ValuesSurvive) {
  const std::vector<std::pair<std::string, std::string>> values{{"DurationPerImage", "12"},
                                                                {"InitZoomInFactor", "2.5"},
                                                                {"ShowImagePath", "false"},
                                                                {"SkipPatterns", "a\n\nb"},
                                                                {"SelectedAlbum",
                                                                 "Gr\xC3\xBC\xC3\x9F"
                                                                 "e"},
                                                                {"CrossDissolveDuration", "0.1"}};
  for (const auto& [key, value] : values) {
    const ProgramAnswer answer = run({"settings", "--display=D", key, value});
    EXPECT_EQ(answer.status, 0) << answer.err;
    EXPECT_EQ(answer.out, "");
  }
  for (const auto& [key, value] : values) EXPECT_EQ(run({"settings", "--display=D", key}).out, value + "\n");
  EXPECT_EQ(run({"settings", "--display=E", "DurationPerImage"}).out, "60\n");
}

TEST_F(SettingsTool, WhatTheSheetWouldRefuseIsStoredWithANote) {
  const ProgramAnswer answer = run({"settings", "--display=D", "FontSize", "5"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.err, HasSubstr("FontSize is outside"));
  EXPECT_EQ(run({"settings", "--display=D", "FontSize"}).out, "5\n");
  EXPECT_THAT(run({"settings", "--display=D", "ZoomIsOn", "true"}).err, HasSubstr("both on"));
  EXPECT_EQ(run({"settings", "--display=D", "DurationPerImage", "-5"}).status, 0);
}

TEST_F(SettingsTool, WrongUsageIsToldApart) {
  for (const std::vector<std::string>& words : {std::vector<std::string>{"settings", "Nope"},
                                                {"settings", "FontSize", "abc"},
                                                {"settings", "FontSize", ""},
                                                {"settings", "ZoomIsOn", "perhaps"},
                                                {"settings", "SkipPatterns", "\xFF"},
                                                {"settings", "a", "b", "c"},
                                                {"settings", "ImageDirectoryBookmarks", "/pictures"},
                                                {"settings", "--bogus"},
                                                {"settings", "fontsize"}}) {
    const ProgramAnswer answer = run(words);
    EXPECT_EQ(answer.status, 2) << words[1];
    EXPECT_THAT(answer.err, HasSubstr("--help")) << words[1];
    EXPECT_EQ(answer.out, "");
  }
  EXPECT_FALSE(fs::exists(settingsFile("unknown")));
}

TEST_F(SettingsTool, ADamagedFileIsKeptBesideTheNewOne) {
  fs::create_directories(settingsFile("D").parent_path());
  std::ofstream(settingsFile("D")) << "garbage";
  const ProgramAnswer answer = run({"settings", "--display=D", "FontSize", "30"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.err, HasSubstr(settingsFile("D").string()));
  EXPECT_EQ(contentOf(settingsFile("D").string() + ".damaged"), "garbage");
  EXPECT_EQ(run({"settings", "--display=D", "FontSize"}).out, "30\n");
}

TEST_F(SettingsTool, WhereNothingCanBeStoredItFails) {
  fs::create_directories(settingsFile("D"));
  EXPECT_EQ(run({"settings", "--display=D", "FontSize", "30"}).status, 1);
  environment_.erase("HOME");
  EXPECT_EQ(run({"settings", "--display=D", "FontSize"}).status, 1);
}

TEST_F(SettingsTool, ControlCharactersOfArgumentsDoNotReachTheTerminal) {
  EXPECT_THAT(run({"settings", "\x1B[31m"}).err, HasSubstr("\\x1B[31m"));
  EXPECT_THAT(run({"\x1B[31m"}).err, HasSubstr("\\x1B[31m"));
}

TEST_F(SettingsTool, TheProgramExplainsItself) {
  EXPECT_EQ(run({}).status, 2);
  EXPECT_EQ(run({"bogus"}).status, 2);
  EXPECT_THAT(run({"--help"}).out, HasSubstr("Usage: lumivane COMMAND"));
  EXPECT_THAT(run({"settings", "--help"}).out, HasSubstr("EnableDeleteAtRuntime"));
  EXPECT_THAT(run({"inspect", "--help"}).out, HasSubstr("--preview DIR"));
  EXPECT_THAT(run({"displays", "--help"}).out, HasSubstr("Usage: lumivane displays"));
}

TEST_F(SettingsTool, WithoutADisplayServerThereAreNoDisplays) {
  const ProgramAnswer answer = run({"displays"});
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.err, HasSubstr("no display server"));
}

TEST_F(SettingsTool, DisplaysAreListedWithNumberNameAndSize) {
  environment_["QT_QPA_PLATFORM"] = "offscreen";
  environment_["XDG_RUNTIME_DIR"] = scratch_.string();
  const ProgramAnswer answer = run({"displays"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.out, testing::MatchesRegex("1\t[^\t\n]+\t[0-9]+x[0-9]+\n"));
}

}  // namespace
}  // namespace lumivane
