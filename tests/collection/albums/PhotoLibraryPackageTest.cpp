#include "collection/albums/PhotoLibraryPackage.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;

class PhotoLibraryPackage : public testing::Test {
 protected:
  [[nodiscard]] std::string found(const std::string& named = "") const {
    return findPhotoLibrary(named, folder_.path()).value_or("none");
  }
  const TemporaryFolder folder_;
};

TEST_F(PhotoLibraryPackage, isTheFirstInTheOrderOfAFileBrowser) {
  EXPECT_EQ(found(), "none");
  folder_.makeFolder("photos 10.photoslibrary");
  folder_.makeFolder("Photos 9.photoslibrary");
  EXPECT_EQ(found(), folder_ / "Photos 9.photoslibrary");
  folder_.makeFolder("alt.photoslibrary");
  EXPECT_EQ(found(), folder_ / "alt.photoslibrary");
}

TEST_F(PhotoLibraryPackage, isAFolderOrALinkToOne) {
  folder_.write("a.photoslibrary", "a file");
  fs::create_directory_symlink("nowhere", folder_ / "b.photoslibrary");
  folder_.makeFolder(".photoslibrary");
  folder_.makeFolder(".hidden.photoslibrary");
  folder_.makeFolder("c.photoslibrary.old");
  folder_.makeFolder("below/d.photoslibrary");
  EXPECT_EQ(found(), "none");
  fs::create_directory_symlink("below/d.photoslibrary", folder_ / "e.photoslibrary");
  EXPECT_EQ(found(), folder_ / "e.photoslibrary");
}

TEST_F(PhotoLibraryPackage, thatIsNamedCountsAlone) {
  folder_.makeFolder("a.photoslibrary");
  EXPECT_EQ(found("/elsewhere/b.photoslibrary"), "/elsewhere/b.photoslibrary") << "there or not";
  EXPECT_EQ(found(folder_ / "a.photoslibrary//"), folder_ / "a.photoslibrary");
  EXPECT_EQ(found("/"), "/");
}

TEST_F(PhotoLibraryPackage, thatIsNamedFromTheWorkingFolderGetsAWholePath) {
  EXPECT_EQ(found("x.photoslibrary"), (fs::current_path() / "x.photoslibrary").string());
}

TEST_F(PhotoLibraryPackage, keepsTheNameOfALinkThatNamesAPackage) {
  folder_.makeFolder("real.photoslibrary");
  fs::create_directory_symlink("real.photoslibrary", folder_ / "link.photoslibrary");
  fs::create_directory_symlink("real.photoslibrary", folder_ / "link");
  folder_.makeFolder("plain");
  EXPECT_EQ(found(folder_ / "link.photoslibrary"), folder_ / "link.photoslibrary");
  EXPECT_EQ(found(folder_ / "link"), folder_ / "real.photoslibrary");
  EXPECT_EQ(found(folder_ / "plain"), folder_ / "plain");
}

TEST_F(PhotoLibraryPackage, isNoneWhereThereIsNoPicturesFolder) {
  EXPECT_EQ(findPhotoLibrary("", ""), std::nullopt);
  EXPECT_EQ(findPhotoLibrary("", folder_ / "gone"), std::nullopt);
}

}  // namespace
}  // namespace lumivane
