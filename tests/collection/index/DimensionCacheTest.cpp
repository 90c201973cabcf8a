#include "collection/index/DimensionCache.h"

#include <gtest/gtest.h>

#include "collection/index/DimensionCacheFile.h"
#include "platform/PictureDimensions.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

constexpr FileStamp kStamp{1000, 1'700'000'000'123'456'789};
constexpr SizePx kSize{640, 480};

DimensionCache reread(const DimensionCache& cache) {
  Result<DimensionCache> parsed = DimensionCache::parsed(cache.content());
  EXPECT_TRUE(parsed) << parsed.error();
  return parsed ? std::move(parsed).value() : DimensionCache();
}

TEST(DimensionCache, KeepsSizesOverARestart) {
  DimensionCache cache;
  cache.keep("/a/b.jpg", kStamp, kSize);
  cache.keep("/a/c d.jpg", kStamp, kNoPicture);
  cache.keep("/top.jpg", kStamp, {1, 2});
  DimensionCache again = reread(cache);
  EXPECT_EQ(again.size(), 3U);
  EXPECT_EQ(again.find("/a/b.jpg", kStamp), kSize);
  EXPECT_EQ(again.find("/a/c d.jpg", kStamp), kNoPicture);
  EXPECT_EQ(again.find("/top.jpg", kStamp), (SizePx{1, 2}));
  EXPECT_EQ(again.find("/a/d.jpg", kStamp), std::nullopt);
  EXPECT_EQ(again.find("/b/b.jpg", kStamp), std::nullopt);
  EXPECT_FALSE(again.isChanged());
}

TEST(DimensionCache, AFileOfAnotherSizeOrTimeIsAnotherFile) {
  DimensionCache cache;
  cache.keep("/a/b.jpg", kStamp, kSize);
  EXPECT_EQ(cache.find("/a/b.jpg", {kStamp.bytes + 1, kStamp.modified}), std::nullopt);
  EXPECT_EQ(cache.find("/a/b.jpg", {kStamp.bytes, kStamp.modified + 1}), std::nullopt);
  cache.keep("/a/b.jpg", {2000, -1}, {3, 4});
  EXPECT_EQ(cache.size(), 1U);
  EXPECT_EQ(reread(cache).find("/a/b.jpg", {2000, -1}), (SizePx{3, 4}));
}

TEST(DimensionCache, ForgetsWhatIsGoneBelowTheFolderAndNothingElse) {
  DimensionCache cache;
  for (const char* path : {"/p/a.jpg", "/p/b.jpg", "/p/sub/c.jpg", "/p-2/d.jpg", "/p2/e.jpg", "/o/f.jpg"})
    cache.keep(path, kStamp, kSize);
  DimensionCache later = reread(cache);
  ASSERT_TRUE(later.find("/p/a.jpg", kStamp));
  later.forgetUnseenBelow("/p/");
  EXPECT_EQ(later.size(), 4U);
  EXPECT_TRUE(later.isChanged());
  later = reread(later);
  for (const char* path : {"/p/a.jpg", "/p-2/d.jpg", "/p2/e.jpg", "/o/f.jpg"})
    EXPECT_TRUE(later.find(path, kStamp)) << path;
  for (const char* path : {"/p/b.jpg", "/p/sub/c.jpg"}) EXPECT_FALSE(later.find(path, kStamp)) << path;
}

TEST(DimensionCache, ForgetsEverythingUnseenBelowTheRoot) {
  DimensionCache cache;
  cache.keep("/a.jpg", kStamp, kSize);
  cache.keep("/p/b.jpg", kStamp, kSize);
  DimensionCache later = reread(cache);
  later.forgetUnseenBelow("/");
  EXPECT_EQ(later.size(), 0U);
  EXPECT_EQ(reread(later).size(), 0U);
}

TEST(DimensionCache, ForgettingNothingChangesNothing) {
  DimensionCache cache;
  cache.keep("/p/a.jpg", kStamp, kSize);
  DimensionCache later = reread(cache);
  ASSERT_TRUE(later.find("/p/a.jpg", kStamp));
  later.forgetUnseenBelow("/p");
  EXPECT_FALSE(later.isChanged());
}

TEST(DimensionCache, DamageIsNoticedWhereverItIs) {
  DimensionCache cache;
  cache.keep("/a/b.jpg", kStamp, kSize);
  const std::string content = cache.content();
  for (std::size_t i = 0; i < content.size(); ++i) {
    std::string damaged = content;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x10);
    EXPECT_FALSE(DimensionCache::parsed(damaged)) << "byte " << i;
    EXPECT_FALSE(DimensionCache::parsed(content.substr(0, i))) << "cut to " << i;
  }
  EXPECT_FALSE(DimensionCache::parsed(content + "x"));
  EXPECT_FALSE(DimensionCache::parsed(""));
}

// A forger can compute the checksum: what follows must be looked at all the same.
class ForgedCache : public testing::TestWithParam<std::string> {};

TEST_P(ForgedCache, IsRefused) {
  const std::string empty = DimensionCache().content();
  std::uint64_t sum = 14695981039346656037ULL;
  for (const char byte : GetParam()) sum = (sum ^ static_cast<unsigned char>(byte)) * 1099511628211ULL;
  std::string content = empty.substr(0, empty.size() - 8);
  for (int i = 0; i < 8; ++i) content += static_cast<char>(sum >> (8 * i) & 0xFF);
  const Result<DimensionCache> parsed = DimensionCache::parsed(content + GetParam());
  ASSERT_FALSE(parsed);
  EXPECT_EQ(parsed.error(), "it makes no sense");
}

std::string text(std::string_view bytes) {
  return std::string{static_cast<char>(bytes.size()), '\0'}.append(bytes);
}
const std::string kOne("\1\0\0\0", 4);
const std::string kStampBytes(16, '\1');
const std::string kSizeBytes("\1\0\0\0\1\0\0\0", 8);
INSTANTIATE_TEST_SUITE_P(
    Forgeries, ForgedCache,
    testing::Values(text("/a") + "\xFF\xFF\xFF\xFF" + text("b") + kStampBytes + kSizeBytes,  // too many
                    text("/a") + kOne + text("b") + kStampBytes,                             // cut short
                    text("a") + kOne + text("b") + kStampBytes + kSizeBytes,               // no absolute path
                    text("/a/") + kOne + text("b") + kStampBytes + kSizeBytes,             // slash at its end
                    text("/a") + kOne + text("") + kStampBytes + kSizeBytes,               // no name
                    text("/a") + kOne + text("b/c") + kStampBytes + kSizeBytes,            // a path as a name
                    text("/a") + kOne + text("b") + kStampBytes + std::string(8, '\xFF'),  // too wide
                    text("/a") + kOne + text("b") + kStampBytes +
                        std::string("\1\0\0\0\0\0\0\0", 8)));  // no height

class DimensionCacheFileTest : public testing::Test {
 protected:
  MemoryFiles files_;
  RecordingLog log_;
  DimensionCacheFile file_{"/cache/sizes", files_, log_};
};

TEST_F(DimensionCacheFileTest, IsWrittenOnlyWhenSomethingHasChanged) {
  DimensionCache cache = file_.load();
  EXPECT_EQ(cache.size(), 0U);
  file_.store(cache);
  EXPECT_EQ(files_.writes, 0);
  cache.keep("/a/b.jpg", kStamp, kSize);
  file_.store(cache);
  EXPECT_EQ(files_.writes, 1);
  cache = file_.load();
  EXPECT_EQ(cache.find("/a/b.jpg", kStamp), kSize);
  file_.store(cache);
  EXPECT_EQ(files_.writes, 1);
  EXPECT_TRUE(log_.entries().empty());
}

TEST_F(DimensionCacheFileTest, ADamagedOneIsLoggedAndReplaced) {
  files_.content["/cache/sizes"] = "damaged";
  DimensionCache cache = file_.load();
  EXPECT_TRUE(
      log_.has("The cache of picture sizes is made anew: /cache/sizes: it was written by something else !",
               LogLevel::Error));
  cache.keep("/a/b.jpg", kStamp, kSize);
  file_.store(cache);
  EXPECT_EQ(file_.load().size(), 1U);
}

TEST_F(DimensionCacheFileTest, WhatCannotBeReadOrWrittenIsLogged) {
  files_.unreadable.insert("/cache/sizes");
  files_.unwritable.insert("/cache/sizes");
  DimensionCache cache = file_.load();
  cache.keep("/a/b.jpg", kStamp, kSize);
  file_.store(cache);
  EXPECT_EQ(log_.countStartingWith("The cache of picture sizes cannot be read: "), 1U);
  EXPECT_EQ(log_.countStartingWith("The cache of picture sizes cannot be written: "), 1U);
}

TEST_F(DimensionCacheFileTest, WithoutAPathNothingIsKept) {
  const DimensionCacheFile nowhere("", files_, log_);
  DimensionCache cache = nowhere.load();
  cache.keep("/a/b.jpg", kStamp, kSize);
  nowhere.store(cache);
  EXPECT_EQ(files_.writes, 0);
  EXPECT_TRUE(log_.entries().empty());
}

}  // namespace
}  // namespace lumivane
