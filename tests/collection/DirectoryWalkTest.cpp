#include "collection/DirectoryWalk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class DirectoryWalkTest : public testing::Test {
 protected:
  WalkResult walk(WalkRequest request = {}) {
    request.mainDirectoryLocation = folder_.path();
    DirectoryWalk walk(std::move(request), log_);
    EXPECT_FALSE(walk.isFinished());
    walk.scanDirectoryByHand();
    EXPECT_TRUE(walk.isFinished());
    WalkResult result = walk.takeResult();
    EXPECT_EQ(walk.numImages(), result.imagefiles.size());
    return result;
  }
  std::vector<std::string> pictures(WalkRequest request = {}) { return walk(std::move(request)).imagefiles; }
  // A walk in which the user says yes to every question.
  WalkRequest allowing() {
    WalkRequest request;
    request.askPermission = [this](const std::string& folder, const std::stop_token&) {
      questions_.push_back(folder);
      return PermissionAnswer{kUserConfirmed, folder};
    };
    return request;
  }
  void link(const std::string& target, std::string_view name) {
    std::filesystem::create_symlink(target, folder_ / name);
  }
  void expectSummary(std::size_t images, std::size_t roots, std::size_t folders) {
    const auto entries = log_.entries();
    ASSERT_GE(entries.size(), 3U);
    const auto end = entries.size();
    EXPECT_EQ(entries[end - 3].text,
              "Finished directory scan by hand. Num images = " + std::to_string(images));
    EXPECT_EQ(entries[end - 2].text,
              "Directories traversed = " + std::to_string(roots) + " (root and dirs pointed at by aliases)");
    EXPECT_EQ(entries[end - 1].text,
              "Directories total = " + std::to_string(folders) + " (incl subdirectories)");
    for (std::size_t i = end - 3; i < end; ++i) EXPECT_EQ(entries[i].level, LogLevel::Information);
  }

  TemporaryFolder folder_;
  RecordingLog log_;
  std::vector<std::string> questions_;
};

TEST_F(DirectoryWalkTest, TakesPicturesByTypeAndSize) {
  folder_.write("a.JPG", std::string(3000, 'x'));
  folder_.write("b.HEIC", std::string(3000, 'x'));
  folder_.write("c.txt", std::string(3000, 'x'));
  folder_.write("d.png", "");
  EXPECT_THAT(pictures(), UnorderedElementsAre(folder_ / "a.JPG", folder_ / "b.HEIC"));
  EXPECT_TRUE(log_.has("skipping file " + folder_ / "d.png" + " with size 0 B < 0 B", LogLevel::Information));
  EXPECT_EQ(log_.countStartingWith("skipping file "), 1U);
  expectSummary(2, 1, 1);
}

TEST_F(DirectoryWalkTest, PictureOfExactlyTheThresholdIsDropped) {
  folder_.write("exact.jpg", std::string(5 * 1024, 'x'));
  folder_.write("larger.jpg", std::string(5 * 1024 + 1, 'x'));
  WalkRequest request;
  request.excludekB = 5;
  EXPECT_THAT(pictures(std::move(request)), ElementsAre(folder_ / "larger.jpg"));
  EXPECT_TRUE(log_.has("skipping file " + folder_ / "exact.jpg" + " with size 5120 B < 5120 B",
                       LogLevel::Information));
}

TEST_F(DirectoryWalkTest, ThresholdWrapsBeyondFourGigabytes) {
  folder_.write("a.jpg", "xx");
  WalkRequest request;
  request.excludekB = (1U << 22) + 0U;  // x 1024 = 2^32, which is 0
  EXPECT_THAT(pictures(std::move(request)), ElementsAre(folder_ / "a.jpg"));
}

TEST_F(DirectoryWalkTest, ThresholdIsShownAsASignedNumber) {
  folder_.write("a.jpg", "xx");
  WalkRequest request;
  request.excludekB = (1U << 22) - 1U;
  EXPECT_THAT(pictures(std::move(request)), IsEmpty());
  EXPECT_TRUE(
      log_.has("skipping file " + folder_ / "a.jpg" + " with size 2 B < -1024 B", LogLevel::Information));
}

TEST_F(DirectoryWalkTest, FilesBeyondFourGigabytesAreTaken) {
  const std::string file = folder_.write("huge.tif", "");
  std::filesystem::resize_file(file, (std::uintmax_t{4} << 30) + 1);
  WalkRequest request;
  request.excludekB = 5;
  EXPECT_THAT(pictures(std::move(request)), ElementsAre(file));
}

TEST_F(DirectoryWalkTest, CountsFoldersAndGoesIntoPackages) {
  folder_.write("one/two/a.jpg", "x");
  folder_.write("Some.photoslibrary/originals/b.jpg", "x");
  folder_.write(".hidden/c.jpg", "x");
  EXPECT_THAT(pictures(), UnorderedElementsAre(folder_ / "one/two/a.jpg",
                                               folder_ / "Some.photoslibrary/originals/b.jpg"));
  expectSummary(2, 1, 5);
}

TEST_F(DirectoryWalkTest, SkipPatternsApplyToWholePaths) {
  folder_.write("thumbs/a.jpg", "x");
  folder_.write("Thumbs/b.jpg", "x");
  WalkRequest request;
  request.skipPatterns = {"(", ".*/thumb.*"};
  EXPECT_THAT(pictures(std::move(request)), ElementsAre(folder_ / "Thumbs/b.jpg"));
  EXPECT_EQ(log_.countStartingWith("Error in regexp: (\n"), 1U);
}

TEST_F(DirectoryWalkTest, LinksToFilesAreNeverTaken) {
  folder_.write("a.jpg", "x");
  link("a.jpg", "link.jpg");
  link("/dev/zero", "device.jpg");
  EXPECT_THAT(pictures(allowing()), ElementsAre(folder_ / "a.jpg"));
  EXPECT_THAT(questions_, IsEmpty());
  EXPECT_EQ(log_.entries().size(), 3U) << "only the summary";
}

TEST_F(DirectoryWalkTest, AllowedFolderIsWalkedAsAnotherRoot) {
  const TemporaryFolder elsewhere;
  elsewhere.write("sub/b.jpg", "x");
  folder_.write("a.jpg", "x");
  link(elsewhere.path(), "link");
  const WalkResult result = walk(allowing());
  EXPECT_THAT(result.imagefiles, ElementsAre(folder_ / "a.jpg", elsewhere / "sub/b.jpg"));
  EXPECT_THAT(result.rootDirectories, ElementsAre(folder_.path(), elsewhere.path()));
  EXPECT_THAT(questions_, ElementsAre(elsewhere.path()));
  EXPECT_EQ(log_.entries()[0].text, "Getting permission for alias: " + folder_ / "link");
  EXPECT_EQ(log_.entries()[1].text, "   pointing to: " + elsewhere.path());
  EXPECT_EQ(log_.entries()[2].text, "User gave permission for: " + elsewhere.path());
  expectSummary(2, 2, 4);  // the root, the folder behind the link, that folder as a root, its subfolder
}

TEST_F(DirectoryWalkTest, TheFolderThatTheUserChoseIsWalked) {
  const TemporaryFolder chosen;
  chosen.write("c.jpg", "x");
  folder_.makeFolder("target");
  link("target", "link");
  WalkRequest request;
  request.askPermission = [&](const std::string&, const std::stop_token&) {
    return PermissionAnswer{kUserConfirmed, chosen.path()};
  };
  const WalkResult result = walk(std::move(request));
  EXPECT_THAT(result.rootDirectories, ElementsAre(folder_.path(), chosen.path()));
  EXPECT_THAT(result.imagefiles, ElementsAre(chosen / "c.jpg"));
  EXPECT_TRUE(log_.has("User gave permission for: " + chosen.path(), LogLevel::Information));
}

TEST_F(DirectoryWalkTest, DeniedFoldersAreLeftOut) {
  const TemporaryFolder elsewhere;
  elsewhere.write("b.jpg", "x");
  link(elsewhere.path(), "one");
  link(elsewhere.path(), "two");
  WalkRequest request;
  request.askPermission = [](const std::string&, const std::stop_token&) {
    return PermissionAnswer{-1000, "/x"};
  };
  const WalkResult result = walk(std::move(request));
  EXPECT_THAT(result.imagefiles, IsEmpty());
  EXPECT_EQ(log_.count("   user denied (response = -1000)"), 2U);
  expectSummary(0, 1, 3);
}

TEST_F(DirectoryWalkTest, WithoutAnyoneToAskFoldersAreDenied) {
  folder_.makeFolder("target");
  link("target", "link");
  walk();
  EXPECT_TRUE(log_.has("   user denied (response = 0)", LogLevel::Information));
}

TEST_F(DirectoryWalkTest, FolderBehindTwoLinksIsWalkedTwice) {
  const TemporaryFolder elsewhere;
  elsewhere.write("b.jpg", "x");
  link(elsewhere.path(), "one");
  link(elsewhere.path(), "two");
  EXPECT_THAT(pictures(allowing()), ElementsAre(elsewhere / "b.jpg", elsewhere / "b.jpg"));
}

TEST_F(DirectoryWalkTest, NumberOfRootsIsBounded) {
  link(folder_.path(), "self");
  const WalkResult result = walk(allowing());
  EXPECT_EQ(result.rootDirectories.size(), DirectoryWalk::kMostRoots);
  EXPECT_EQ(log_.countStartingWith("Too many folders behind aliases: "), 1U);
}

TEST_F(DirectoryWalkTest, DeadLinksToFoldersAreTold) {
  link("gone/", "slash");
  link("gone/Holiday", "plain");
  link("/gone/.hidden", "hidden");
  link("gone/nowhere.jpg", "dead.jpg");
  EXPECT_THAT(pictures(allowing()), IsEmpty());
  EXPECT_TRUE(log_.has("Symlink/Alias is dead: " + folder_ / "slash" + "!", LogLevel::Information));
  EXPECT_TRUE(log_.has("   pointing to: " + folder_ / "gone/", LogLevel::Information));
  EXPECT_TRUE(log_.has("Symlink/Alias is dead: " + folder_ / "plain" + "!", LogLevel::Information));
  EXPECT_TRUE(log_.has("   pointing to: " + folder_ / "gone/Holiday", LogLevel::Information));
  EXPECT_TRUE(log_.has("   pointing to: /gone/.hidden", LogLevel::Information));
  EXPECT_EQ(log_.entries().size(), 9U) << "a dead link to a file is dropped without a word";
  EXPECT_THAT(questions_, IsEmpty());
  expectSummary(0, 1, 1);
}

TEST_F(DirectoryWalkTest, LoopsOfLinksFailToResolve) {
  link("loop-b", "loop-a");
  link("loop-a", "loop-b");
  EXPECT_THAT(pictures(allowing()), IsEmpty());
  EXPECT_TRUE(log_.has("Alias resolution failed: " + folder_ / "loop-a" + " !", LogLevel::Information));
  EXPECT_TRUE(log_.has("Alias resolution failed: " + folder_ / "loop-b" + " !", LogLevel::Information));
}

TEST_F(DirectoryWalkTest, MissingRootIsTold) {
  RecordingLog log;
  DirectoryWalk walk({.mainDirectoryLocation = folder_ / "gone"}, log);
  walk.scanDirectoryByHand();
  EXPECT_THAT(walk.takeResult().imagefiles, IsEmpty());
  EXPECT_TRUE(log.has("enumeratorAtURL: " + folder_ / "gone" + "\n error: No such file or directory",
                      LogLevel::Error));
}

TEST_F(DirectoryWalkTest, NamesThatNoListCanHoldAreLeftOutOneByOne) {
  folder_.write("line\nbreak.jpg", "x");
  folder_.write("latin1-\xE9.jpg", "x");
  folder_.write("latin1-\xE9.txt", "x");
  folder_.write("bad\xFF/a.jpg", "x");
  folder_.write("bad\xFF/sub/b.jpg", "x");
  folder_.write("good.jpg", "x");
  EXPECT_THAT(pictures(), ElementsAre(folder_ / "good.jpg"));
  const std::string file = "File name cannot be kept in the image list: ";
  const std::string folder = "Folder name cannot be kept in the image list: ";
  EXPECT_TRUE(log_.has(file + folder_ / "line\\x0Abreak.jpg" + " !", LogLevel::Error));
  EXPECT_TRUE(log_.has(file + folder_ / "latin1-\\xE9.jpg" + " !", LogLevel::Error));
  EXPECT_TRUE(log_.has(folder + folder_ / "bad\\xFF" + " !", LogLevel::Error));
  EXPECT_EQ(log_.entries().size(), 6U);
}

TEST_F(DirectoryWalkTest, RootWhoseNameNoListCanHoldIsLeftOut) {
  folder_.write("bad\xFF/a.jpg", "x");
  DirectoryWalk walk({.mainDirectoryLocation = folder_ / "bad\xFF"}, log_);
  walk.scanDirectoryByHand();
  EXPECT_THAT(walk.takeResult().imagefiles, IsEmpty());
  EXPECT_EQ(log_.countStartingWith("Folder name cannot be kept in the image list: "), 1U);
}

TEST_F(DirectoryWalkTest, NamesInTheLogAreMadePrintable) {
  folder_.write("\x1b[2J.jpg", "");
  pictures();
  EXPECT_TRUE(
      log_.has("skipping file " + folder_ / "\\x1B[2J.jpg" + " with size 0 B < 0 B", LogLevel::Information));
}

TEST_F(DirectoryWalkTest, WhoAsksIsToldTheRuleOfEveryFileLeftOut) {
  folder_.write("a.jpg", "xx");
  folder_.write("empty.jpg", "");
  folder_.write("notes.txt", "xx");
  folder_.write(".hidden.jpg", "xx");
  folder_.write(".folder/b.jpg", "xx");
  folder_.write("thumbs/c.jpg", "xx");
  folder_.write("bad\xFF.jpg", "xx");
  const TemporaryFolder other;
  link("a.jpg", "link.jpg");
  link("nowhere", "dead");
  link(other.path(), "refused");
  ASSERT_EQ(mkfifo((folder_ / "pipe.jpg").c_str(), 0600), 0);
  std::map<std::string, LeftOut> leftOut;
  WalkRequest request;
  request.skipPatterns = {".*/thumb.*"};
  request.tellLeftOut = [&](const std::string& path, LeftOut rule) {
    leftOut[path.substr(folder_.path().size() + 1)] = rule;
  };
  EXPECT_THAT(pictures(std::move(request)), ElementsAre(folder_ / "a.jpg"));
  const std::map<std::string, LeftOut> expected = {{"empty.jpg", LeftOut::FileSize},
                                                   {"notes.txt", LeftOut::Type},
                                                   {".hidden.jpg", LeftOut::Hidden},
                                                   {".folder", LeftOut::Hidden},
                                                   {"thumbs/c.jpg", LeftOut::SkipPattern},
                                                   {"bad\xFF.jpg", LeftOut::Name},
                                                   {"link.jpg", LeftOut::Link},
                                                   {"dead", LeftOut::Link},
                                                   {"refused", LeftOut::Link},
                                                   {"pipe.jpg", LeftOut::NoFile}};
  EXPECT_EQ(leftOut, expected);
}

TEST_F(DirectoryWalkTest, FolderThatMayNotBeEnteredIsTold) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read everything";
  folder_.write("closed/a.jpg", "x");
  folder_.write("names-only/b.jpg", "x");
  std::filesystem::permissions(folder_ / "closed", std::filesystem::perms::none);
  std::filesystem::permissions(folder_ / "names-only", std::filesystem::perms::owner_read);
  EXPECT_THAT(pictures(), IsEmpty());
  EXPECT_TRUE(
      log_.has("enumeratorAtURL: " + folder_ / "closed" + "\n error: Permission denied", LogLevel::Error));
  EXPECT_TRUE(log_.has("No attributes for: " + folder_ / "names-only/b.jpg" + " !", LogLevel::Error));
  expectSummary(0, 1, 3);
}

}  // namespace
}  // namespace lumivane
