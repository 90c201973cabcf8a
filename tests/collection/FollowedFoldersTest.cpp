#include "collection/FollowedFolders.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

bool follows(FollowedFolders& followed, const std::string& folder) {
  const PermissionAnswer answer = followed.answer(folder);
  if (answer.response != kUserConfirmed) return false;
  EXPECT_EQ(answer.folder, folder);
  return true;
}

TEST(FollowedFolders, FollowsAFolderOnce) {
  const TemporaryFolder folder;
  const std::string main = folder.makeFolder("main");
  const std::string other = folder.makeFolder("other");
  FollowedFolders followed(main);
  EXPECT_TRUE(follows(followed, other));
  EXPECT_FALSE(follows(followed, other));
}

TEST(FollowedFolders, DoesNotFollowBackIntoWhatIsWalkedAnyway) {
  const TemporaryFolder folder;
  const std::string main = folder.makeFolder("main");
  const std::string sub = folder.makeFolder("main/sub");
  FollowedFolders followed(main + "/");
  EXPECT_FALSE(follows(followed, main));
  EXPECT_FALSE(follows(followed, sub));
  EXPECT_TRUE(follows(followed, folder.makeFolder("mainland"))) << "a name that merely begins alike";
}

TEST(FollowedFolders, FollowsIntoHiddenFoldersOfTheTree) {
  const TemporaryFolder folder;
  FollowedFolders followed(folder.path());
  EXPECT_TRUE(follows(followed, folder.makeFolder(".hidden/inside")));
  EXPECT_TRUE(follows(followed, folder.makeFolder("sub/.hidden")));
}

TEST(FollowedFolders, SeesThroughLinksInTheMainFolder) {
  const TemporaryFolder folder;
  const std::string main = folder.makeFolder("main");
  std::filesystem::create_directory_symlink(main, folder / "link");
  FollowedFolders followed(folder / "link");
  EXPECT_FALSE(follows(followed, main));
}

TEST(FollowedFolders, EverythingLiesBelowTheRoot) {
  FollowedFolders followed("/");
  EXPECT_FALSE(follows(followed, "/usr"));
}

}  // namespace
}  // namespace lumivane
