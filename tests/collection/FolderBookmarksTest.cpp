#include "collection/FolderBookmarks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Entry = RecordingLog::Entry;

class FolderBookmarksTest : public testing::Test {
 protected:
  std::vector<FolderBookmark> bookmarksOf(const std::vector<std::string>& folders) {
    RecordingLog quiet;
    return createBookmarks(folders, quiet).value();
  }
  TemporaryFolder folder_;
  RecordingLog log_;
};

TEST_F(FolderBookmarksTest, EveryFolderGetsABookmark) {
  const std::string a = folder_.makeFolder("a");
  const std::string b = folder_.makeFolder("b");
  const auto bookmarks = createBookmarks({{a, b}}, log_);
  ASSERT_TRUE(bookmarks);
  EXPECT_EQ(bookmarks->size(), 2U);
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"createBookmarks: 2 directories", LogLevel::Information},
                                          Entry{"Bookmark for: " + a, LogLevel::Information},
                                          Entry{"Bookmark for: " + b, LogLevel::Information}));
  EXPECT_EQ(resolveBookmarks(bookmarks, log_), (ResolvedBookmarks{a, {a, b}, false}));
  EXPECT_EQ(log_.entries().size(), 3U) << "folders that are in their place need no words";
}

TEST_F(FolderBookmarksTest, NoListOfFoldersGivesNoBookmarks) {
  EXPECT_EQ(createBookmarks(std::nullopt, log_), std::nullopt);
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"createBookmarks: directories is nil!", LogLevel::Error}));
}

TEST_F(FolderBookmarksTest, FolderWithoutABookmarkIsLeftOut) {
  const std::string a = folder_.makeFolder("a");
  const std::string file = folder_.write("file", "x");
  const auto bookmarks = createBookmarks({{folder_ / "gone", file, a, "relative"}}, log_);
  ASSERT_TRUE(bookmarks);
  EXPECT_EQ(bookmarks->size(), 1U);
  EXPECT_TRUE(
      log_.has("Bookmark creation failed: No such file or directory!\n for directory " + folder_ / "gone",
               LogLevel::Error));
  EXPECT_TRUE(
      log_.has("Bookmark creation failed: Not a directory!\n for directory " + file, LogLevel::Error));
  EXPECT_EQ(log_.countStartingWith("Bookmark creation failed: "), 3U);
  EXPECT_EQ(resolveBookmarks(bookmarks, log_).mainDirectoryLocation, a);
}

TEST_F(FolderBookmarksTest, NothingChosenResolvesToNothingWithoutAWord) {
  EXPECT_EQ(resolveBookmarks(emptyBookmarks(), log_), ResolvedBookmarks{});
  EXPECT_EQ(resolveBookmarks(std::nullopt, log_), ResolvedBookmarks{});
  EXPECT_EQ(resolveBookmarks(std::vector<FolderBookmark>{}, log_), ResolvedBookmarks{});
  EXPECT_THAT(log_.entries(), IsEmpty());
}

TEST_F(FolderBookmarksTest, RecordedFoldersAreToldWithoutLookingForThem) {
  const std::string a = folder_.makeFolder("a");
  const std::string b = folder_.makeFolder("b");
  std::vector<FolderBookmark> bookmarks = bookmarksOf({a, b});
  std::filesystem::remove(a);
  EXPECT_EQ(recordedFolders(bookmarks), (ResolvedBookmarks{a, {a, b}, false}));
  bookmarks[0] = "damaged";
  EXPECT_EQ(recordedFolders(bookmarks), (ResolvedBookmarks{std::nullopt, {b}, false}));
  EXPECT_EQ(recordedFolders(emptyBookmarks()), ResolvedBookmarks{});
  EXPECT_EQ(recordedFolders(std::nullopt), ResolvedBookmarks{});
}

TEST_F(FolderBookmarksTest, LostFolderIsToldAndTheOthersAreOpened) {
  const std::string a = folder_.makeFolder("a");
  const std::string b = folder_.makeFolder("b");
  const auto bookmarks = bookmarksOf({a, b});
  std::filesystem::remove(a);
  EXPECT_EQ(resolveBookmarks(bookmarks, log_), (ResolvedBookmarks{std::nullopt, {b}, true}));
  EXPECT_THAT(log_.entries(), ElementsAre(Entry{"Bookmark not resolvable!", LogLevel::Error},
                                          Entry{"Orig path: " + a, LogLevel::Error},
                                          Entry{"Error: No such file or directory", LogLevel::Error}));
}

TEST_F(FolderBookmarksTest, RenamedFolderIsFoundAndStale) {
  const std::string a = folder_.makeFolder("a");
  const std::string b = folder_.makeFolder("b");
  const auto bookmarks = bookmarksOf({a, b});
  folder_.makeFolder("c");
  std::filesystem::rename(a, folder_ / "renamed");
  EXPECT_EQ(resolveBookmarks(bookmarks, log_),
            (ResolvedBookmarks{folder_ / "renamed", {folder_ / "renamed", b}, true}));
  EXPECT_THAT(log_.entries(),
              ElementsAre(Entry{"Bookmark got stale: " + folder_ / "renamed", LogLevel::Information}));
}

TEST_F(FolderBookmarksTest, AnotherFolderAtThePlaceIsUsedAndStale) {
  const std::string a = folder_.makeFolder("a");
  const auto bookmarks = bookmarksOf({a});
  std::filesystem::rename(a, folder_ / "old");
  folder_.makeFolder("a");
  EXPECT_EQ(resolveBookmarks(bookmarks, log_), (ResolvedBookmarks{a, {a}, true}));
  EXPECT_TRUE(log_.has("Bookmark got stale: " + a, LogLevel::Information));
}

TEST_F(FolderBookmarksTest, FileAtThePlaceIsNoFolder) {
  const std::string a = folder_.makeFolder("a");
  const auto bookmarks = bookmarksOf({a});
  std::filesystem::remove(a);
  folder_.write("a", "x");
  EXPECT_TRUE(resolveBookmarks(bookmarks, log_).opened.empty());
  EXPECT_TRUE(log_.has("Error: Not a directory", LogLevel::Error));
}

TEST_F(FolderBookmarksTest, FolderBehindALinkIsResolvedByItsLink) {
  const std::string a = folder_.makeFolder("a");
  std::filesystem::create_directory_symlink(a, folder_ / "link");
  EXPECT_EQ(resolveBookmarks(bookmarksOf({folder_ / "link"}), log_).mainDirectoryLocation, folder_ / "link");
}

TEST_F(FolderBookmarksTest, BytesThatAreNoBookmarkAreTold) {
  const std::string a = folder_.makeFolder("a");
  const std::vector<FolderBookmark> bookmarks = {"garbage", bookmarksOf({a})[0], ""};
  EXPECT_EQ(resolveBookmarks(bookmarks, log_), (ResolvedBookmarks{std::nullopt, {a}, true}));
  EXPECT_EQ(log_.count("Bookmark not resolvable!"), 2U);
  EXPECT_EQ(log_.count("Orig path: (null)"), 2U);
  EXPECT_EQ(log_.count("Error: Not a bookmark of a folder"), 2U);
}

TEST_F(FolderBookmarksTest, RecordSurvivesWritingAndParsing) {
  for (const std::string& path :
       {std::string("/"), std::string("/p/with\nline feed"), std::string("/p/\xE9")}) {
    const BookmarkRecord record{path, {UINT64_MAX, 2049, 17, -5}};
    const auto parsed = parseBookmark(writeBookmark(record));
    ASSERT_TRUE(parsed.ok()) << parsed.error();
    EXPECT_EQ(parsed.value(), record);
  }
}

TEST_F(FolderBookmarksTest, DamagedBookmarksAreErrorsAndNeverMore) {
  using namespace std::string_literals;
  const FolderBookmark good = writeBookmark({"/pictures", {1, 2, 3, 4}});
  for (const std::string& bad :
       {""s, "\0"s, "lumivane folder 2"s + good.substr(17), good.substr(0, good.size() - 9), good + '\0',
        writeBookmark({"", {}}), writeBookmark({"relative", {}}),
        writeBookmark({"/" + std::string(70'000, 'x'), {}}), "lumivane folder 1\nfilesystem \n"s,
        "lumivane folder 1\nfilesystem 11112222333344445\n"s,
        "lumivane folder 1\nfilesystem -1\ndevice 0\ninode 0\nbirth 0\npath /"s,
        "lumivane folder 1\nfilesystem 1 \ndevice 0\ninode 0\nbirth 0\npath /"s}) {
    EXPECT_FALSE(parseBookmark(bad).ok()) << bad.substr(0, 100);
  }
  std::mt19937 random(3);
  for (int i = 0; i < 20'000; ++i) {
    FolderBookmark changed = good;
    changed[random() % changed.size()] = static_cast<char>(random());
    const auto parsed = parseBookmark(changed.substr(0, 1 + random() % changed.size()));
    EXPECT_TRUE(!parsed || parsed.value().path.starts_with('/'));
  }
}

TEST(FolderIdentity, IsTheSameUnderAnotherNameAndAnotherInAnotherFolder) {
  const TemporaryFolder folder;
  const auto a = identityOfFolder(folder.makeFolder("a"));
  const auto b = identityOfFolder(folder.makeFolder("b"));
  std::filesystem::rename(folder / "a", folder / "c");
  const auto c = identityOfFolder(folder / "c");
  ASSERT_TRUE(a && b && c);
  EXPECT_EQ(a.value(), c.value());
  EXPECT_TRUE(sameFolder(a.value(), c.value()));
  EXPECT_FALSE(sameFolder(a.value(), b.value()));
}

TEST(FolderIdentity, ComparesByWhatLastsLongest) {
  const FolderIdentity recorded{10, 20, 30, 40};
  EXPECT_TRUE(sameFolder(recorded, {11, 21, 30, 40}))
      << "numbers may change with a restart, the birth does not";
  EXPECT_FALSE(sameFolder(recorded, {10, 20, 30, 41}));
  EXPECT_FALSE(sameFolder(recorded, {10, 20, 31, 40}));
  EXPECT_TRUE(sameFolder(recorded, {10, 21, 30, 0})) << "the file system without a birth";
  EXPECT_FALSE(sameFolder(recorded, {11, 20, 30, 0}));
  EXPECT_TRUE(sameFolder(recorded, {0, 20, 30, 0})) << "the device without either";
  EXPECT_FALSE(sameFolder(recorded, {0, 21, 30, 0}));
  EXPECT_TRUE(sameFolder({10, 20, 0, 0}, {11, 21, 0, 0})) << "nothing to tell them by";
}

}  // namespace
}  // namespace lumivane
