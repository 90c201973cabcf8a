#include "collection/index/FolderFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

class FolderFilesTest : public testing::Test {
 protected:
  std::vector<std::string> search(std::stop_token stop = {}) {
    found_.clear();
    auto opened = index_.open(folder_.path(), stop);
    EXPECT_TRUE(opened);
    const auto done = opened.value()->search(
        {}, [this](IndexedFile file) { found_.push_back(std::move(file)); }, stop);
    EXPECT_TRUE(done);
    std::vector<std::string> names;
    for (const IndexedFile& file : found_) names.push_back(fs::relative(file.path, folder_.path()).string());
    return names;
  }

  TemporaryFolder folder_;
  RecordingLog log_;
  std::map<std::string, LeftOut> leftOut_;
  FolderFiles index_{log_, [this](const std::string& path, LeftOut rule) {
                       leftOut_[fs::path(path).lexically_relative(folder_.path()).string()] = rule;
                     }};
  std::vector<IndexedFile> found_;
};

TEST_F(FolderFilesTest, TellsOfEveryPictureByItsNameWithItsStamp) {
  const std::string a = folder_.write("a.JPG", "12345");
  folder_.write("sub/deep/b.heic", "");
  struct stat status {};
  ASSERT_EQ(stat(a.c_str(), &status), 0);
  EXPECT_THAT(search(), UnorderedElementsAre("a.JPG", "sub/deep/b.heic"));
  for (const IndexedFile& file : found_) {
    EXPECT_FALSE(file.size);
    if (file.path != a) continue;
    EXPECT_EQ(file.stamp.bytes, 5U);
    EXPECT_EQ(file.stamp.modified, status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec);
  }
}

TEST_F(FolderFilesTest, SaysByWhichRuleTheRestIsLeftOut) {
  folder_.write("a.jpg", "x");
  folder_.write("notes.txt", "x");
  folder_.write(".hidden.jpg", "x");
  folder_.write(".folder/b.jpg", "x");
  folder_.write("bad\xFF.jpg", "x");
  folder_.write("line\nbreak/c.jpg", "x");
  fs::create_symlink("a.jpg", folder_ / "link.jpg");
  fs::create_directory_symlink("/", folder_ / "root");
  ASSERT_EQ(mkfifo((folder_ / "pipe.jpg").c_str(), 0600), 0);
  EXPECT_THAT(search(), UnorderedElementsAre("a.jpg"));
  EXPECT_THAT(leftOut_,
              UnorderedElementsAre(Pair("notes.txt", LeftOut::Type), Pair(".hidden.jpg", LeftOut::Hidden),
                                   Pair(".folder", LeftOut::Hidden), Pair("bad\xFF.jpg", LeftOut::Name),
                                   Pair("line\nbreak", LeftOut::Name), Pair("link.jpg", LeftOut::Link),
                                   Pair("root", LeftOut::Link), Pair("pipe.jpg", LeftOut::NoFile)));
}

TEST_F(FolderFilesTest, AFolderThatCannotBeReadCostsOnlyItself) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is forbidden to the superuser";
  folder_.write("a.jpg", "x");
  folder_.write("locked/b.jpg", "x");
  fs::permissions(folder_ / "locked", fs::perms::none);
  EXPECT_THAT(search(), UnorderedElementsAre("a.jpg"));
  EXPECT_EQ(log_.countStartingWith("Folder cannot be read: "), 1U);
}

TEST_F(FolderFilesTest, AFolderThatIsGoneIsLogged) {
  auto opened = index_.open("/gone/for/good", {});
  ASSERT_TRUE(opened);
  EXPECT_TRUE(opened.value()->search({}, [](const IndexedFile&) { ADD_FAILURE(); }, {}));
  EXPECT_TRUE(log_.has("Folder cannot be read: /gone/for/good: No such file or directory", LogLevel::Error));
}

TEST_F(FolderFilesTest, StopsWhenAsked) {
  folder_.write("a.jpg", "x");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_THAT(search(stop.get_token()), IsEmpty());
}

}  // namespace
}  // namespace lumivane
