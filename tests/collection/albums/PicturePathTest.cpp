#include "collection/albums/PicturePath.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

const PackageFolders kFolders{"/p/X.photoslibrary", "/p/X.photoslibrary/scopes/cloudsharing/data"};

std::string pathOf(const std::string& directory, const std::string& fileName, std::int64_t type = 3) {
  return picturePath(kFolders, {directory, fileName, type}).value_or("none");
}

TEST(PicturePath, isBelowTheOriginals) {
  EXPECT_EQ(pathOf("A", "A1.jpeg"), "/p/X.photoslibrary/originals/A/A1.jpeg");
  EXPECT_EQ(pathOf("A/b", "ä.heic"), "/p/X.photoslibrary/originals/A/b/ä.heic");
  EXPECT_EQ(pathOf("..a", "..jpeg"), "/p/X.photoslibrary/originals/..a/..jpeg");
}

TEST(PicturePath, ofAPictureThatOthersShareIsInAFolderOfItsOwn) {
  EXPECT_EQ(pathOf("A", "A1.jpeg", 4), "/p/X.photoslibrary/scopes/cloudsharing/data/A/A1.jpeg");
}

TEST(PicturePath, ofAPictureThatWasNeverCopiedIsWhereItLies) {
  EXPECT_EQ(pathOf("/Users/me/Downloads", "IMG.JPG", 10), "/Users/me/Downloads/IMG.JPG");
  EXPECT_EQ(pathOf("/proc/self", "environ", 10), "none") << "no picture's name";
  EXPECT_EQ(pathOf("/a/../b", "IMG.JPG", 10), "none");
  EXPECT_EQ(pathOf("/", "IMG.JPG", 10), "none");
  EXPECT_EQ(pathOf("//b", "IMG.JPG", 10), "none");
}

TEST(PicturePath, leadsDownOrIsNone) {
  for (const char* directory : {"", ".", "..", "../..", "A/../..", "A//B", "A/", "A/."}) {
    EXPECT_EQ(pathOf(directory, "A1.jpeg"), "none") << directory;
  }
  for (const char* fileName : {"", ".", "..", "../A1.jpeg", "a/b.jpeg", "/etc/passwd", "/A1.jpeg"}) {
    EXPECT_EQ(pathOf("A", fileName), "none") << fileName;
  }
}

TEST(PicturePath, isTextOfOneLineThatTheSystemOpens) {
  EXPECT_EQ(pathOf("A", std::string("a\0.jpeg", 7)), "none");
  EXPECT_EQ(pathOf(std::string("A\0", 2), "a.jpeg"), "none");
  EXPECT_EQ(pathOf("A", "a\nb.jpeg"), "none");
  EXPECT_EQ(pathOf("A", "a\xFF.jpeg"), "none");
  const std::string longName(5000, 'a');
  EXPECT_EQ(pathOf("A", longName), "none");
}

TEST(PicturePath, sharedPicturesAreLookedForWhereThisReleaseKeepsThem) {
  const TemporaryFolder folder;
  EXPECT_EQ(foldersOf(folder.path()).cloudFolder, folder / "resources/cloudsharing/data");
  folder.makeFolder("scopes/cloudsharing/data");
  EXPECT_EQ(foldersOf(folder.path()).cloudFolder, folder / "scopes/cloudsharing/data");
}

}  // namespace
}  // namespace lumivane
