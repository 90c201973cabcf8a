// The companion on photo libraries: their albums listed, one of them collected.
#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

#include "tests/collection/albums/MadeLibrary.h"
#include "tests/tools/LumivaneToolFixture.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class AlbumsTool : public LumivaneTool {
 protected:
  AlbumsTool() {
    library_.addAlbum({.key = 10, .title = "Summer", .position = 1, .sortKey = 1, .ascending = 0});
    library_.addAlbum({.key = 11, .title = "Two\nlines", .position = 2});
    library_.addAlbum({.key = 12, .title = "Elsewhere", .position = 3});
    library_.addAsset({.key = 1, .fileName = "1.jpeg", .date = 1, .caption = "A dog", .keywords = {"sea"}});
    library_.addAsset({.key = 2, .fileName = "2.jpeg", .date = 2});
    library_.addAsset({.key = 3, .fileName = "3.jpeg", .date = 3, .hasFile = false});
    library_.addAsset({.key = 4, .fileName = "4.jpeg", .hidden = 1});
    library_.addAsset({.key = 5, .fileName = "5.mov", .kind = 1});
    library_.addAsset({.key = 6, .fileName = "6.jpg", .directory = pictures_.string(), .hasFile = false});
    std::ofstream(pictures_ / "6.jpg") << "picture";
    for (int key = 1; key <= 5; ++key) library_.put(key, 10);
    library_.put(6, 12);
    library_.close();
  }

  [[nodiscard]] std::string original(const std::string& name) const {
    return library_.package() + "/originals/A/" + name;
  }
  [[nodiscard]] std::string setting(const std::string& key) {
    return run({"settings", "--display=D", key}).out;
  }

  // In the Pictures folder of the program's home.
  MadeLibrary library_{(home_ / "Pictures/Photos.photoslibrary").string()};
};

TEST_F(AlbumsTool, ListsTheAlbumsOfTheLibraryInThePicturesFolder) {
  const auto before = inventoryOf(library_.package());
  const ProgramAnswer answer = run({"albums"});
  EXPECT_EQ(answer.status, 0) << answer.err;
  EXPECT_EQ(answer.out, "3\tSummer\n0\tTwo lines\n1\tElsewhere\n");
  EXPECT_EQ(answer.err, "");
  EXPECT_EQ(inventoryOf(library_.package()), before);
}

TEST_F(AlbumsTool, ListsThemAsJson) {
  std::istringstream lines(run({"albums", "--json"}).out);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(nlohmann::json::parse(line),
            nlohmann::json({{"name", "Summer"}, {"identifier", "UUID-10"}, {"pictures", 3}}));
}

TEST_F(AlbumsTool, TheLibraryCanBeNamed) {
  const std::string other = (folder_.path() / "other.photoslibrary").string();
  MadeLibrary(other).addAlbum({.key = 10, .title = "Other"});
  EXPECT_EQ(run({"albums", other}).out, "0\tOther\n");
  environment_["LUMIVANE_PHOTOS_LIBRARY"] = other;
  EXPECT_EQ(run({"albums"}).out, "0\tOther\n");
  EXPECT_THAT(run({"albums", library_.package()}).out, HasSubstr("Summer"));
}

TEST_F(AlbumsTool, ListsTheMembersOfAnAlbum) {
  const ProgramAnswer answer = run({"albums", "--album", "Summer"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.out,
              HasSubstr(original("3.jpeg") + "\n" + original("2.jpeg") + "\n" + original("1.jpeg")));
  std::vector<nlohmann::json> members;
  std::istringstream lines(run({"albums", "--json", "--album=Summer"}).out);
  for (std::string line; std::getline(lines, line);) members.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(members.size(), 5U);
  EXPECT_EQ(members[0]["present"], false);
  EXPECT_EQ(members[2], nlohmann::json({{"path", original("1.jpeg")},
                                        {"present", true},
                                        {"type", "picture"},
                                        {"hidden", false},
                                        {"description", "A dog. sea"}}));
}

TEST_F(AlbumsTool, AProblemIsOneLine) {
  fs::resize_file(library_.databasePath(), 0);
  const ProgramAnswer answer = run({"albums"});
  EXPECT_EQ(answer.status, 1);
  EXPECT_EQ(answer.out, "");
  EXPECT_EQ(answer.err,
            "lumivane: Photo library " + library_.package() + " cannot be read: its database is empty !\n");
  fs::remove_all(library_.package());
  EXPECT_THAT(run({"albums"}).err,
              AllOf(StartsWith("lumivane: there is no photo library in "), HasSubstr("name one")));
}

TEST_F(AlbumsTool, CollectsAnAlbumInItsOrder) {
  paint(pictures_ / "a.png");
  ASSERT_EQ(run({"collect", "--display=D", pictures_.string()}).status, 0);
  const std::string bookmarks = setting("ImageDirectoryBookmarks");
  const auto before = inventoryOf(library_.package());
  const ProgramAnswer answer = run({"collect", "--display=D", "--album", "Summer"});
  EXPECT_EQ(answer.status, 0) << answer.err;
  EXPECT_EQ(answer.out, "2   (# missing files = 1)\n");
  EXPECT_EQ(contentOf(listFile("D")), original("2.jpeg") + "\n" + original("1.jpeg"));
  EXPECT_EQ(setting("UseAlbum"), "true\n");
  EXPECT_EQ(setting("SelectedAlbum"), "Summer\n");
  EXPECT_EQ(setting("ImageDirectoryBookmarks"), bookmarks);
  EXPECT_TRUE(fs::exists(recordFile("D")));
  EXPECT_EQ(inventoryOf(library_.package()), before);
  EXPECT_EQ(run({"collect", "--display=D", pictures_.string()}).status, 0);
  EXPECT_EQ(setting("UseAlbum"), "false\n");
}

TEST_F(AlbumsTool, CollectsAnEmptyAlbum) {
  const ProgramAnswer answer = run({"collect", "--display=D", "--album", "Two lines", library_.package()});
  EXPECT_EQ(answer.status, 0) << answer.err;
  EXPECT_EQ(answer.out, "0   (# missing files = 0)\n");
  EXPECT_EQ(contentOf(listFile("D")), "");
}

TEST_F(AlbumsTool, WhatCannotBeCollectedChangesNothing) {
  EXPECT_THAT(run({"collect", "--display=D", "--album", "Autumn"}).err,
              HasSubstr("Could not find album: Autumn!"));
  EXPECT_THAT(run({"collect", "--display=D", "--album", "Elsewhere"}).err,
              HasSubstr("Could not find '.photoslibrary' in path of photos!"));
  EXPECT_EQ(run({"collect", "--display=D", "--album", "Summer", pictures_.string()}).status, 1);
  EXPECT_FALSE(fs::exists(listFile("D")));
  EXPECT_FALSE(fs::exists(settingsFile("D")));
}

TEST_F(AlbumsTool, WrongUsageIsToldApart) {
  EXPECT_EQ(run({"albums", "a", "b"}).status, 2);
  EXPECT_EQ(run({"albums", "--album"}).status, 2);
  EXPECT_EQ(run({"collect", "--album", "Summer", "--follow-links"}).status, 2);
  EXPECT_EQ(run({"collect", "--display=D"}).status, 2);
  EXPECT_THAT(run({"albums", "--help"}).out, HasSubstr("Usage: lumivane albums"));
}

}  // namespace
}  // namespace lumivane
