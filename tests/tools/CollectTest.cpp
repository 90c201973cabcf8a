#include <fstream>
#include <sstream>

#include "platform/PropertyList.h"
#include "tests/support/AwkwardTree.h"
#include "tests/tools/LumivaneToolFixture.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class Collect : public LumivaneTool {
 protected:
  [[nodiscard]] std::string listOf(const std::string& token) const { return contentOf(listFile(token)); }
};

TEST_F(Collect, StoresListSettingsAndRecordOfTheDisplay) {
  for (const char* name : {"file10.png", "file2.png", "sub/a.png"}) paint(pictures_ / name);
  std::ofstream(pictures_ / "notes.txt") << std::string(10000, 'x');
  std::ofstream(pictures_ / "tiny.png") << "x";
  const ProgramAnswer answer = run({"collect", "--display", "My TV", pictures_.string()});
  EXPECT_EQ(answer.status, 0) << answer.err;
  EXPECT_EQ(answer.out, "3   (# alias dirs = 0)\n");
  EXPECT_EQ(answer.err, "");
  const std::string p = pictures_.string();
  EXPECT_EQ(listOf("My TV"), p + "/file2.png\n" + p + "/file10.png\n" + p + "/sub/a.png");
  EXPECT_EQ(run({"settings", "--display", "My TV", "ImageDirectoryBookmarks"}).out, p + "\n");
  const Result<PropertyList> record = parsePropertyList(contentOf(recordFile("My TV")));
  ASSERT_TRUE(record);
  const auto* dictionary = record.value().as<PropertyListDictionary>();
  ASSERT_NE(dictionary, nullptr);
  EXPECT_EQ(dictionary->at("ImageIndex"), PropertyList(std::int64_t{0}));
  ASSERT_NE(dictionary->at("LastScan").as<WallTime>(), nullptr);
  const auto age = std::chrono::system_clock::now() - *dictionary->at("LastScan").as<WallTime>();
  EXPECT_LT(age, std::chrono::minutes(2));
  for (const fs::path& file : {listFile("My TV"), settingsFile("My TV"), recordFile("My TV")}) {
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write) << file;
  }
}

TEST_F(Collect, TakesTheRightPicturesOfAnAwkwardTree) {
  const fs::path folder = folder_.path() / std::string(60, 't');
  fs::create_directory(folder);
  const AwkwardTree tree(folder.string());
  const auto before = tree.inventory();
  ASSERT_EQ(run({"settings", "--display=D", "ExcludekB", "0"}).status, 0);
  const ProgramAnswer answer = run({"collect", "--display=D", folder.string()});
  EXPECT_EQ(answer.status, 0) << answer.err;
  std::vector<std::string> listed;
  std::istringstream lines(listOf("D"));
  for (std::string line; std::getline(lines, line);) listed.push_back(line);
  EXPECT_THAT(listed, testing::UnorderedElementsAreArray(tree.expectedPictures()));
  EXPECT_EQ(tree.inventory(), before);
}

TEST_F(Collect, WithoutADisplayServerTheDisplayIsUnknown) {
  paint(pictures_ / "a.png");
  const ProgramAnswer answer = run({"collect", pictures_.string()});
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.err, HasSubstr("no display server"));
  EXPECT_EQ(listOf("unknown"), (pictures_ / "a.png").string());
}

TEST_F(Collect, ADisplayServerThatDoesNotAnswerEndsNothing) {
  paint(pictures_ / "a.png");
  environment_["DISPLAY"] = ":4711";
  environment_["WAYLAND_DISPLAY"] = "gone";
  environment_["XDG_RUNTIME_DIR"] = scratch_.string();
  EXPECT_EQ(run({"collect", pictures_.string()}).status, 0);
}

TEST_F(Collect, RelativeFoldersAreStoredAbsolute) {
  paint(pictures_ / "a.png");
  EXPECT_EQ(run({"collect", "--display=D", "./pictures/"}).status, 0);
  EXPECT_EQ(listOf("D"), (fs::canonical(pictures_) / "a.png").string());
  EXPECT_EQ(run({"collect", "--display=D", "pictures/../pictures"}).status, 0);
  EXPECT_EQ(listOf("D"), (fs::canonical(pictures_) / "a.png").string());
}

TEST_F(Collect, ALinkStaysAsTheUserNamedIt) {
  paint(pictures_ / "a.png");
  fs::create_directory_symlink(pictures_, folder_.path() / "link");
  EXPECT_EQ(run({"collect", "--display=D", (folder_.path() / "link").string()}).status, 0);
  EXPECT_EQ(listOf("D"), (folder_.path() / "link" / "a.png").string());
}

TEST_F(Collect, LinksToFoldersAreFollowedOnlyOnRequest) {
  paint(pictures_ / "a.png");
  paint(folder_.path() / "other" / "b.png");
  fs::create_directory_symlink(folder_.path() / "other", pictures_ / "link");
  fs::create_directory_symlink("..", pictures_ / "up");
  fs::create_directory_symlink(".", pictures_ / "self");
  EXPECT_EQ(run({"collect", "--display=D", pictures_.string()}).out, "1   (# alias dirs = 0)\n");
  const ProgramAnswer answer =
      run({"collect", "--display=D", "--follow-links", (pictures_ / "link").string()});
  EXPECT_EQ(answer.out, "1   (# alias dirs = 0)\n");
  fs::remove(pictures_ / "up");
  EXPECT_EQ(run({"collect", "--display=D", "--follow-links", pictures_.string()}).out,
            "2   (# alias dirs = 1)\n");
  EXPECT_EQ(listOf("D"),
            (folder_.path() / "other" / "b.png").string() + "\n" + (pictures_ / "a.png").string());
}

TEST_F(Collect, TheDisplaysOwnRulesAreKept) {
  paint(pictures_ / "a.png");
  paint(pictures_ / "thumbs" / "b.png");
  EXPECT_EQ(run({"collect", "--display=D", pictures_.string()}).out, "1   (# alias dirs = 0)\n");
  EXPECT_EQ(run({"settings", "--display=D", "SkipPatterns", "nothing\n.*/a\\.png"}).status, 0);
  EXPECT_EQ(run({"collect", "--display=D", pictures_.string()}).status, 0);
  EXPECT_EQ(listOf("D"), (pictures_ / "thumbs" / "b.png").string());
  EXPECT_EQ(run({"settings", "--display=D", "ExcludekB", "100000"}).status, 0);
  EXPECT_EQ(run({"collect", "--display=D", pictures_.string()}).out, "0   (# alias dirs = 0)\n");
  EXPECT_EQ(listOf("D"), "");
  EXPECT_EQ(run({"settings", "--display=D", "SkipPatterns"}).out, "nothing\n.*/a\\.png\n");
}

TEST_F(Collect, AnIndexLeavesOutPicturesThatAreTooSmallInPixels) {
  paint(pictures_ / "a.png");
  paint(pictures_ / "exact.png", 300, 900);
  paint(pictures_ / "thumbs" / "b.png");
  EXPECT_EQ(run({"collect", "--display=D", "--method", "index", pictures_.string()}).out, "1\n");
  EXPECT_EQ(listOf("D"), (pictures_ / "a.png").string());
  EXPECT_EQ(run({"collect", "--display=D", "--method=walk", pictures_.string()}).out,
            "2   (# alias dirs = 0)\n");
}

TEST_F(Collect, AnIndexRemembersWhatItHasMeasured) {
  paint(pictures_ / "a.png");
  environment_["XDG_CACHE_HOME"] = (folder_.path() / "cache").string();
  const std::vector<std::string> words = {"collect", "--display=D", "--method=index", "--explain",
                                          pictures_.string()};
  EXPECT_THAT(run(words).err, HasSubstr("Pictures measured by their headers = 1\n"));
  EXPECT_TRUE(fs::exists(folder_.path() / "cache/lumivane/PictureDimensions.cache"));
  EXPECT_THAT(run(words).err, HasSubstr("Pictures measured by their headers = 0\n"));
  std::ofstream(folder_.path() / "cache/lumivane/PictureDimensions.cache") << "damaged";
  const ProgramAnswer answer = run(words);
  EXPECT_EQ(answer.out, "1\n");
  EXPECT_THAT(answer.err, HasSubstr("The cache of picture sizes is made anew: "));
  EXPECT_THAT(run(words).err, HasSubstr("Pictures measured by their headers = 0\n"));
}

TEST_F(Collect, WhatIsLeftOutIsExplainedByBothMethods) {
  paint(pictures_ / "a.png");
  paint(pictures_ / "narrow.png", 200, 900);
  paint(pictures_ / "thumbs" / "b.png");
  paint(pictures_ / ".hidden" / "c.png");
  std::ofstream(pictures_ / "notes.txt") << "x";
  std::ofstream(pictures_ / "small.png") << "x";
  std::ofstream(pictures_ / "text.png") << std::string(20000, 'x');
  fs::create_symlink("a.png", pictures_ / "link.png");
  const std::string p = pictures_.string();
  const std::string common = "hidden\t" + p + "/.hidden\nlink\t" + p + "/link.png\n";
  const std::string others = "type\t" + p + "/notes.txt\nfile size\t" + p + "/small.png\n";
  const std::string skipped = "skip pattern\t" + p + "/thumbs/b.png\n";
  EXPECT_EQ(run({"collect", "--display=D", "--explain", p}).out,
            common + others + skipped + "3   (# alias dirs = 0)\n");
  const ProgramAnswer answer = run({"collect", "--display=D", "--explain", "--method=index", p});
  EXPECT_EQ(answer.out, common + "pixel size\t" + p + "/narrow.png\n" + others + "no picture\t" + p +
                            "/text.png\n" + skipped + "1\n");
  EXPECT_THAT(answer.err, HasSubstr("does not answer for " + p + ": there is no session bus\n"));
  EXPECT_THAT(answer.err, HasSubstr("Pictures are searched by the headers of the files: " + p + "\n"));
}

TEST_F(Collect, AWrongFolderChangesNothing) {
  paint(pictures_ / "a.png");
  ASSERT_EQ(run({"collect", "--display=D", pictures_.string()}).status, 0);
  const std::string before = listOf("D") + contentOf(settingsFile("D")) + contentOf(recordFile("D"));
  for (const fs::path& wrong : {pictures_ / "gone", pictures_ / "a.png", fs::path(""), fs::path("/dev/null"),
                                pictures_ / "\xFF", pictures_ / "a\nb"}) {
    const ProgramAnswer answer = run({"collect", "--display=D", wrong.string()});
    EXPECT_EQ(answer.status, 1) << wrong;
    EXPECT_THAT(answer.err, testing::StartsWith("lumivane: ")) << wrong;
    EXPECT_EQ(answer.out, "");
  }
  EXPECT_EQ(listOf("D") + contentOf(settingsFile("D")) + contentOf(recordFile("D")), before);
}

TEST_F(Collect, AFolderThatMayNotBeReadChangesNothing) {
  if (::geteuid() == 0) GTEST_SKIP() << "nothing is forbidden to the superuser";
  fs::create_directory(pictures_ / "locked");
  fs::permissions(pictures_ / "locked", fs::perms::none);
  EXPECT_EQ(run({"collect", "--display=D", (pictures_ / "locked").string()}).status, 1);
  EXPECT_FALSE(fs::exists(listFile("D")));
}

TEST_F(Collect, WhereNothingCanBeStoredItFails) {
  paint(pictures_ / "a.png");
  fs::create_directories(listFile("D"));
  const ProgramAnswer answer = run({"collect", "--display=D", pictures_.string()});
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.err, HasSubstr("saving image list failed"));
  EXPECT_FALSE(fs::exists(settingsFile("D")));
  environment_.erase("HOME");
  EXPECT_EQ(run({"collect", "--display=D", pictures_.string()}).status, 1);
}

TEST_F(Collect, HostileDisplayNamesStayInTheirFolder) {
  paint(pictures_ / "a.png");
  EXPECT_EQ(run({"collect", "--display", "../../../escape", pictures_.string()}).status, 0);
  EXPECT_TRUE(fs::exists(listFile("%2E.%2F..%2F..%2Fescape")));
  EXPECT_EQ(run({"collect", "--display", "", pictures_.string()}).status, 0);
  EXPECT_TRUE(fs::exists(listFile("%empty")));
  EXPECT_EQ(run({"collect", "--display", std::string(5000, 'n'), pictures_.string()}).status, 0);
  EXPECT_EQ(std::distance(fs::directory_iterator(home_), {}), 2);  // .config and .local
}

TEST_F(Collect, WrongUsageIsToldApart) {
  EXPECT_EQ(run({"collect"}).status, 2);
  EXPECT_EQ(run({"collect", "a", "b"}).status, 2);
  EXPECT_EQ(run({"collect", "--bogus", "a"}).status, 2);
  EXPECT_EQ(run({"collect", "a", "--display"}).status, 2);
  EXPECT_EQ(run({"collect", "a", "--method", "guess"}).status, 2);
  EXPECT_EQ(run({"collect", "a", "--method", "index", "--follow-links"}).status, 2);
  EXPECT_EQ(run({"collect", "--album", "a", "--method", "index"}).status, 2);
  EXPECT_EQ(run({"collect", "--album", "a", "--explain"}).status, 2);
  EXPECT_EQ(run({"collect", "--help"}).status, 0);
  EXPECT_THAT(run({"collect", "-h"}).out, HasSubstr("Usage: lumivane collect"));
}

}  // namespace
}  // namespace lumivane
