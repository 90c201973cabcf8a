// Real libraries, against what an independent reading of their databases says.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "collection/albums/SqlitePhotoLibrary.h"
#include "tests/collection/albums/MadeLibrary.h"
#include "tests/imaging/SampleManifest.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using Row = std::map<std::string, std::string>;
using Rows = std::vector<Row>;

constexpr std::string_view kUserAlbum = "2";
constexpr std::string_view kByDate = "1";

Rows readTable(const fs::path& path) {
  std::ifstream in(path);
  const auto cells = [](const std::string& line) {
    std::vector<std::string> result;
    std::istringstream stream(line + "\t");
    for (std::string cell; std::getline(stream, cell, '\t');) result.push_back(cell);
    return result;
  };
  std::string line;
  std::getline(in, line);
  const std::vector<std::string> names = cells(line);
  Rows rows;
  while (std::getline(in, line)) {
    const std::vector<std::string> values = cells(line);
    Row& row = rows.emplace_back();
    for (std::size_t i = 0; i < names.size(); ++i) row[names[i]] = i < values.size() ? values[i] : "";
  }
  return rows;
}

std::string withEscapes(const std::string& text) {
  std::string result;
  for (const char c : text) result.append(c == '\n' ? std::string("\\n") : std::string(1, c));
  return result;
}

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text.append(text.empty() ? "" : ", ").append(part);
  return text;
}

class SampleLibraries : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const auto samples = samplesFolder();
    if (!samples) GTEST_SKIP() << "no sample files on this machine";
    const fs::path base = fs::canonical(*samples / "libraries");
    package_ = (base / (std::string(GetParam()) + ".photoslibrary")).string();
    for (Row& row : readTable(base / (std::string(GetParam()) + ".albums.tsv"))) {
      if (row["kind"] == kUserAlbum && row["trashed"] == "0" && row["folder_path"].empty()) {
        albums_[row["album_uuid"]].push_back(std::move(row));
      }
    }
    for (Row& row : readTable(base / (std::string(GetParam()) + ".assets.tsv"))) assets_[row["uuid"]] = row;
  }

  [[nodiscard]] static long number(const std::string& text) { return text.empty() ? 0 : std::stol(text); }

  // The members of an album in the order in which its own application shows them.
  [[nodiscard]] static Rows inOrder(Rows members) {
    std::erase_if(members, [](const Row& row) {
      return row.at("asset_uuid").empty() || row.at("asset_trashed") != "0";
    });
    if (members.empty()) return members;
    const std::string key = members[0].at("custom_sort_key");
    std::ranges::stable_sort(members, [&](const Row& a, const Row& b) {
      if (key == "5") return a.at("asset_title") < b.at("asset_title");
      const char* column = key == kByDate ? "position_by_date" : "position_stored";
      return number(a.at(column)) < number(b.at(column));
    });
    if (members[0].at("custom_sort_ascending") == "0") std::ranges::reverse(members);
    return members;
  }

  // The table gives paths below the package, and whole ones of files that were never copied.
  [[nodiscard]] std::string wholePath(const std::string& path) const {
    return path.starts_with('/') ? path : package_ + "/" + path;
  }

  void expectPicture(const AlbumPicture& picture, const Row& member) {
    EXPECT_EQ(picture.path, wholePath(member.at("path")));
    EXPECT_EQ(picture.isPresent, member.at("present") == "yes");
    EXPECT_EQ(picture.mediaType == MediaType::Picture, member.at("asset_kind") == "photo");
    EXPECT_EQ(picture.hidden, member.at("asset_hidden") == "1");
    const Row& asset = assets_.at(member.at("asset_uuid"));
    EXPECT_EQ(withEscapes(picture.comment), asset.at("caption"));
    EXPECT_EQ(joined(picture.keywords), asset.at("keywords"));
  }

  std::string package_;
  std::map<std::string, Rows> albums_;
  std::map<std::string, Row> assets_;
};

TEST_P(SampleLibraries, albumsAndPicturesAreThoseOfTheTable) {
  const auto before = inventoryOf(package_);
  const SqlitePhotoLibrary library(package_, "", "");
  const Result<AlbumList> list = library.albums({});
  ASSERT_TRUE(list) << list.error();
  EXPECT_EQ(list.value().albums.size(), albums_.size());
  long position = -1;
  for (const Album& album : list.value().albums) {
    SCOPED_TRACE(album.name);
    ASSERT_TRUE(albums_.contains(album.identifier));
    const Rows& rows = albums_[album.identifier];
    EXPECT_EQ(album.name, rows[0].at("title"));
    EXPECT_LT(position, number(rows[0].at("album_order_key"))) << "in the user's order";
    position = number(rows[0].at("album_order_key"));
    const auto pictures = library.pictures(album, AlbumDetail::Descriptions, {});
    ASSERT_TRUE(pictures) << pictures.error();
    const Rows expected = inOrder(rows);
    ASSERT_EQ(pictures.value().size(), expected.size());
    EXPECT_EQ(album.numPictures, expected.size()) << "neither movies nor hidden ones in these albums";
    for (std::size_t i = 0; i < expected.size(); ++i) expectPicture(pictures.value()[i], expected[i]);
  }
  EXPECT_EQ(inventoryOf(package_), before);
}

INSTANTIATE_TEST_SUITE_P(All, SampleLibraries,
                         testing::Values("Test-10.15.7", "Test-10.16.0.1", "Test-13.5.1-compare-2"),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           std::ranges::replace_if(
                               name, [](char c) { return c == '-' || c == '.'; }, '_');
                           return name;
                         });

TEST(SampleLibrary, placesOfItsPicturesAreRead) {
  const auto samples = samplesFolder();
  if (!samples) GTEST_SKIP() << "no sample files on this machine";
  const SqlitePhotoLibrary library((*samples / "libraries/Test-10.15.7.photoslibrary").string(), "", "");
  const auto pictures = library.pictures({"Pumpkin Farm", "0C514A98-7B77-4E4F-801B-364B7B65EAFA", 0},
                                         AlbumDetail::Descriptions, {});
  ASSERT_TRUE(pictures) << pictures.error();
  EXPECT_THAT(pictures.value().at(2).places,
              testing::ElementsAre("Downtown", "Omaha", "NE", "United States"));
}

}  // namespace
}  // namespace lumivane
