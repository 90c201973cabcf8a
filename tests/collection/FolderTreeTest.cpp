#include "collection/FolderTree.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>

#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class RecordingVisitor final : public FolderVisitor {
 public:
  bool visit(const FolderEntry& entry) override {
    entries.push_back(entry.path());
    deepest = std::max(deepest, entries.back().size());
    descriptors = std::max(descriptors, entry.folder);
    return entry.name != notEntered;
  }
  void cannotRead(const std::string& folderPath, int error) override {
    failures.emplace_back(folderPath, error);
  }
  bool stopWanted() const override { return entries.size() >= stopAfter; }

  std::vector<std::string> entries;
  std::vector<std::pair<std::string, int>> failures;
  std::string notEntered;
  std::size_t stopAfter = SIZE_MAX;
  std::size_t deepest = 0;
  int descriptors = 0;
};

// A chain of folders, each of which also holds a file and an empty folder.
void makeChain(const std::string& root, int depth, std::size_t nameBytes) {
  int at = open(root.c_str(), O_DIRECTORY | O_CLOEXEC);
  const std::string name(nameBytes, 'd');
  for (int i = 0; i < depth; ++i) {
    ASSERT_EQ(mkdirat(at, "empty", S_IRWXU), 0);
    close(openat(at, "file", O_CREAT | O_WRONLY | O_CLOEXEC, S_IRUSR));
    ASSERT_EQ(mkdirat(at, name.c_str(), S_IRWXU), 0);
    const int next = openat(at, name.c_str(), O_DIRECTORY | O_CLOEXEC);
    close(at);
    ASSERT_GE(next, 0);
    at = next;
  }
  close(at);
}

TEST(FolderTree, VisitsEverythingThatIsNotHidden) {
  const TemporaryFolder folder;
  folder.write("a.jpg", "x");
  folder.write("sub/b.jpg", "x");
  folder.write("sub/.hidden.jpg", "x");
  folder.write(".secret/c.jpg", "x");
  folder.write("Some.app/Contents/d.png", "x");
  RecordingVisitor visitor;
  FolderTree().tour(folder.path(), visitor);
  EXPECT_THAT(visitor.entries, UnorderedElementsAre(folder / "a.jpg", folder / "sub", folder / "sub/b.jpg",
                                                    folder / "Some.app", folder / "Some.app/Contents",
                                                    folder / "Some.app/Contents/d.png"));
  EXPECT_THAT(visitor.failures, IsEmpty());
}

TEST(FolderTree, RootMayEndWithSlashes) {
  const TemporaryFolder folder;
  folder.write("a.jpg", "x");
  RecordingVisitor visitor;
  FolderTree().tour(folder.path() + "//", visitor);
  EXPECT_THAT(visitor.entries, ElementsAre(folder / "a.jpg"));
}

TEST(FolderTree, RootMayBeHiddenOrALink) {
  const TemporaryFolder folder;
  folder.write(".hidden/a.jpg", "x");
  std::filesystem::create_symlink(".hidden", folder / "link");
  RecordingVisitor visitor;
  FolderTree().tour(folder / ".hidden", visitor);
  FolderTree().tour(folder / "link", visitor);
  EXPECT_THAT(visitor.entries, ElementsAre(folder / ".hidden/a.jpg", folder / "link/a.jpg"));
}

TEST(FolderTree, LinksAreNotFollowed) {
  const TemporaryFolder folder;
  folder.write("sub/a.jpg", "x");
  std::filesystem::create_symlink("..", folder / "sub/up");
  RecordingVisitor visitor;
  FolderTree().tour(folder.path(), visitor);
  EXPECT_THAT(visitor.entries, UnorderedElementsAre(folder / "sub", folder / "sub/a.jpg", folder / "sub/up"));
}

TEST(FolderTree, DoesNotEnterWhatTheVisitorRefuses) {
  const TemporaryFolder folder;
  folder.write("yes/a.jpg", "x");
  folder.write("no/b.jpg", "x");
  RecordingVisitor visitor;
  visitor.notEntered = "no";
  FolderTree().tour(folder.path(), visitor);
  EXPECT_THAT(visitor.entries, UnorderedElementsAre(folder / "yes", folder / "yes/a.jpg", folder / "no"));
}

TEST(FolderTree, MissingRootIsTold) {
  RecordingVisitor visitor;
  FolderTree().tour("/no/such/folder", visitor);
  FolderTree().tour("", visitor);
  FolderTree().tour("/" + std::string(2 * PATH_MAX, 'x'), visitor);
  EXPECT_THAT(visitor.failures,
              ElementsAre(std::pair<std::string, int>("/no/such/folder", ENOENT),
                          std::pair<std::string, int>("", ENOENT), testing::Pair(testing::_, ENAMETOOLONG)));
}

TEST(FolderTree, FolderThatMayNotBeReadIsToldAndTheRestIsVisited) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read everything";
  const TemporaryFolder folder;
  folder.makeFolder("closed");
  folder.write("open/a.jpg", "x");
  std::filesystem::permissions(folder / "closed", std::filesystem::perms::none);
  RecordingVisitor visitor;
  FolderTree().tour(folder.path(), visitor);
  EXPECT_THAT(visitor.failures, ElementsAre(std::pair<std::string, int>(folder / "closed", EACCES)));
  EXPECT_THAT(visitor.entries, testing::Contains(folder / "open/a.jpg"));
}

TEST(FolderTree, FileAsRootIsTold) {
  const TemporaryFolder folder;
  const std::string file = folder.write("a.jpg", "x");
  RecordingVisitor visitor;
  FolderTree().tour(file, visitor);
  EXPECT_THAT(visitor.failures, ElementsAre(std::pair<std::string, int>(file, ENOTDIR)));
}

TEST(FolderTree, StopsWhenAsked) {
  const TemporaryFolder folder;
  makeChain(folder.path(), 50, 3);
  RecordingVisitor visitor;
  visitor.stopAfter = 10;
  FolderTree().tour(folder.path(), visitor);
  EXPECT_LT(visitor.entries.size(), 20U);
}

TEST(FolderTree, DepthCostsNeitherDescriptorsNorPaths) {
  constexpr int kDepth = 300;
  const TemporaryFolder folder;
  makeChain(folder.path(), kDepth, 200);
  RecordingVisitor visitor;
  FolderTree().tour(folder.path(), visitor);
  EXPECT_EQ(visitor.entries.size(), 3U * kDepth);
  EXPECT_THAT(visitor.failures, IsEmpty());
  EXPECT_GT(visitor.deepest, 60'000U);
  EXPECT_LT(visitor.descriptors, 100) << "an open folder for each level";
}

TEST(FolderTree, ReportsTheKindOfEverything) {
  class KindVisitor final : public FolderVisitor {
   public:
    bool visit(const FolderEntry& entry) override {
      kinds[entry.name] = entry.kind;
      return true;
    }
    void cannotRead(const std::string&, int) override { ADD_FAILURE(); }
    bool stopWanted() const override { return false; }
    std::map<std::string, EntryKind> kinds;
  };
  const TemporaryFolder folder;
  folder.write("file", "x");
  folder.makeFolder("folder");
  std::filesystem::create_symlink("folder", folder / "link");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), S_IRUSR), 0);
  KindVisitor visitor;
  FolderTree().tour(folder.path(), visitor);
  EXPECT_THAT(visitor.kinds,
              ElementsAre(testing::Pair("file", EntryKind::File), testing::Pair("folder", EntryKind::Folder),
                          testing::Pair("link", EntryKind::Link), testing::Pair("pipe", EntryKind::Other)));
}

}  // namespace
}  // namespace lumivane
