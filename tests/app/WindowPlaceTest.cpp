#include "app/WindowPlace.h"

#include <cmath>

#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

struct WindowPlaceTest : testing::Test {
  const std::string path = "/state/lumivane/de.orvik.LumivaneApp.window.plist";
  MemoryFiles files;
  RecordingLog log;

  std::optional<RectPt> load() { return WindowPlace(files, log, "/state").load(); }
  void store(const std::string& entries) {
    files.content[path] =
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + entries + "</dict></plist>";
  }
};

TEST_F(WindowPlaceTest, comesBackInTheNextRun) {
  WindowPlace(files, log, "/state").save({{-120.5, 30}, {800, 600}});
  EXPECT_EQ(load(), (RectPt{{-120.5, 30}, {800, 600}}));
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(WindowPlaceTest, theFirstRunHasNone) {
  EXPECT_FALSE(load());
  EXPECT_TRUE(log.entries().empty());
}

TEST_F(WindowPlaceTest, isWrittenOnlyWhenItChanged) {
  WindowPlace place(files, log, "/state");
  place.save({{1, 2}, {3, 4}});
  place.save({{1, 2}, {3, 4}});
  EXPECT_EQ(files.writes, 1);
  WindowPlace next(files, log, "/state");
  next.save(*next.load());
  EXPECT_EQ(files.writes, 1);
}

TEST_F(WindowPlaceTest, wholeNumbersWillDo) {
  store(
      "<key>X</key><integer>1</integer><key>Y</key><integer>-2</integer><key>Width</key><integer>300</"
      "integer>"
      "<key>Height</key><real>200.5</real>");
  EXPECT_EQ(load(), (RectPt{{1, -2}, {300, 200.5}}));
}

TEST_F(WindowPlaceTest, uselessNumbersCountAsNone) {
  const std::string rest = "<key>Y</key><real>1</real><key>Width</key><real>300</real><key>Height</key>";
  for (const std::string& entries :
       {"<key>X</key><real>nan</real>" + rest + "<real>200</real>",
        "<key>X</key><real>1e300</real>" + rest + "<real>200</real>",
        "<key>X</key><string>1</string>" + rest + "<real>200</real>",
        "<key>X</key><real>1</real>" + rest + "<real>-200</real>", std::string()}) {
    store(entries);
    EXPECT_FALSE(load()) << entries;
  }
  EXPECT_EQ(log.countStartingWith("The window's place in " + path + " cannot be used: "), 5U);
}

TEST_F(WindowPlaceTest, damagedBytesCountAsNone) {
  files.content[path] = "bplist00\xFF";
  EXPECT_FALSE(load());
  EXPECT_EQ(files.content[path], "bplist00\xFF") << "it is left alone";
}

TEST_F(WindowPlaceTest, aFailedSaveIsLogged) {
  files.unwritable.insert(path);
  WindowPlace(files, log, "/state").save({{1, 2}, {3, 4}});
  EXPECT_EQ(log.countStartingWith("The window's place was not saved: "), 1U);
}

TEST_F(WindowPlaceTest, withoutAStateFolderNothingIsKept) {
  WindowPlace place(files, log, "");
  place.save({{1, 2}, {3, 4}});
  EXPECT_FALSE(place.load());
  EXPECT_EQ(files.writes, 0);
}

}  // namespace
}  // namespace lumivane
