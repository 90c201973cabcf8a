#include "platform/linux/XdgUserFolders.h"

#include "platform/linux/PosixFiles.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

TEST(EnvironmentTest, ComesFromNameAndValuePairs) {
  const std::array<const char*, 7> entries{"A=1", "B=x=y", "C=", "nothing", "=odd", "A=2", nullptr};
  const Environment environment = environmentFrom(entries.data());
  EXPECT_EQ(environment, (Environment{{"A", "1"}, {"B", "x=y"}, {"C", ""}}));
  EXPECT_EQ(valueOf(environment, "B"), "x=y");
  EXPECT_EQ(valueOf(environment, "Z"), "");
  EXPECT_TRUE(environmentFrom(nullptr).empty());
}

class XdgUserFoldersTest : public ::testing::Test {
 protected:
  [[nodiscard]] UserFolders folders(Environment extra = {}) {
    extra.emplace("HOME", folder_.path());
    return xdgUserFolders(extra, files_);
  }
  TemporaryFolder folder_;
  PosixFiles files_;
};

TEST_F(XdgUserFoldersTest, LieUnderHomeUnlessSaidOtherwise) {
  EXPECT_EQ(folders().config, folder_ / ".config/lumivane");
  EXPECT_EQ(folders().data, folder_ / ".local/share/lumivane");
  EXPECT_EQ(folders().cache, folder_ / ".cache/lumivane");
  EXPECT_EQ(folders().pictures, folder_ / "Pictures");
  EXPECT_EQ(folders().home, folder_.path());
}

TEST_F(XdgUserFoldersTest, FollowTheVariables) {
  const UserFolders found =
      folders({{"XDG_CONFIG_HOME", "/c"}, {"XDG_DATA_HOME", "/d"}, {"XDG_CACHE_HOME", "/e"}});
  EXPECT_EQ(found.cache, "/e/lumivane");
  EXPECT_EQ(found.config, "/c/lumivane");
  EXPECT_EQ(found.data, "/d/lumivane");
}

TEST_F(XdgUserFoldersTest, IgnoreRelativeVariables) {
  const UserFolders found = folders({{"XDG_CONFIG_HOME", "c"}, {"XDG_DATA_HOME", "./d"}});
  EXPECT_EQ(found.config, folder_ / ".config/lumivane");
  EXPECT_EQ(found.data, folder_ / ".local/share/lumivane");
}

TEST_F(XdgUserFoldersTest, AreEmptyWithoutAHome) {
  const UserFolders found = xdgUserFolders({}, files_);
  EXPECT_EQ(found.config, "");
  EXPECT_EQ(found.data, "");
  EXPECT_EQ(found.cache, "");
  EXPECT_EQ(found.home, "");
  EXPECT_EQ(found.pictures, "");
  EXPECT_EQ(xdgUserFolders({{"HOME", "here"}}, files_).config, "");
}

TEST_F(XdgUserFoldersTest, PicturesAreWhereTheUserKeepsThem) {
  folder_.write(".config/user-dirs.dirs",
                "# written by "
                "xdg-user-dirs-update\nXDG_MUSIC_DIR=\"$HOME/Musik\"\nXDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
  EXPECT_EQ(folders().pictures, folder_ / "Bilder");
  folder_.write("other/user-dirs.dirs", "XDG_PICTURES_DIR=\"/srv/photos/\"\n");
  EXPECT_EQ(folders({{"XDG_CONFIG_HOME", folder_ / "other"}}).pictures, "/srv/photos");
}

TEST(PicturesFolderNamedIn, ReadsTheLineAsAShellWould) {
  EXPECT_EQ(picturesFolderNamedIn("  XDG_PICTURES_DIR = \"$HOME/a b\"  \n", "/h"), "/h/a b");
  EXPECT_EQ(picturesFolderNamedIn("XDG_PICTURES_DIR=\"/a\\\"b\\$c\"", "/h"), "/a\"b$c");
  EXPECT_EQ(picturesFolderNamedIn("XDG_PICTURES_DIR=\"/1\"\nXDG_PICTURES_DIR=\"/2\"", "/h"), "/2");
  EXPECT_EQ(picturesFolderNamedIn("XDG_PICTURES_DIR=\"/crlf\"\r\n", "/h"), "/crlf");
}

TEST(PicturesFolderNamedIn, IsAbsentWhenNothingSensibleIsNamed) {
  for (const char* text : {"", "#XDG_PICTURES_DIR=\"/a\"", "XDG_PICTURES_DIR=/a", "XDG_PICTURES_DIR=\"a\"",
                           "XDG_PICTURES_DIR=\"/unfinished", "XDG_PICTURES_DIRS=\"/a\"", "XDG_PICTURES_DIR",
                           "XDG_PICTURES_DIR=\"$HOMEX/a\"", "XDG_PICTURES_DIR=\"\\"}) {
    EXPECT_EQ(picturesFolderNamedIn(text, "/h"), std::nullopt) << text;
  }
}

TEST(PicturesFolderNamedIn, IsAbsentWhenSwitchedOffByPointingAtHome) {
  EXPECT_EQ(picturesFolderNamedIn("XDG_PICTURES_DIR=\"$HOME/\"", "/h"), std::nullopt);
  EXPECT_EQ(picturesFolderNamedIn("XDG_PICTURES_DIR=\"$HOME\"", "/h"), std::nullopt);
}

}  // namespace
}  // namespace lumivane
