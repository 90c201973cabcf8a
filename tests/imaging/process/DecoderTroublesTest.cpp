#include "imaging/process/DecoderTroubles.h"

#include <gtest/gtest.h>

#include "imaging/process/SharedPixelPool.h"
#include "tests/support/FakeChildProgram.h"

namespace lumivane {
namespace {

using std::chrono::milliseconds;

TEST(DecoderTroublesTest, a_picture_is_deadly_after_its_second_death) {
  DecoderTroubles troubles;
  troubles.noteDeath("/a", MediaTime{});
  EXPECT_FALSE(troubles.isDeadly("/a"));
  troubles.noteSuccess();  // other pictures in between change nothing
  troubles.noteDeath("/b", MediaTime{});
  troubles.noteDeath("/a", MediaTime{});
  EXPECT_TRUE(troubles.isDeadly("/a"));
  EXPECT_FALSE(troubles.isDeadly("/b"));
}

TEST(DecoderTroublesTest, deaths_without_a_picture_are_nobodys) {
  DecoderTroubles troubles;
  for (int i = 0; i < 5; ++i) troubles.noteDeath({}, MediaTime{});
  EXPECT_FALSE(troubles.isDeadly({}));
}

TEST(DecoderTroublesTest, starts_wait_from_the_third_death_in_a_row_on) {
  DecoderTroubles troubles;
  const MediaTime now{std::chrono::seconds(50)};
  std::vector<Nanoseconds> waits;
  for (int deaths = 1; deaths <= 15; ++deaths) {
    troubles.noteDeath("/" + std::to_string(deaths), now);
    waits.push_back(troubles.waitBeforeStart(now));
  }
  EXPECT_EQ(waits[0], Nanoseconds{0});
  EXPECT_EQ(waits[1], Nanoseconds{0});
  EXPECT_EQ(waits[2], milliseconds(100));
  EXPECT_EQ(waits[3], milliseconds(200));
  EXPECT_EQ(waits[6], milliseconds(1600));
  EXPECT_EQ(waits[14], kLongestWait);
  EXPECT_EQ(troubles.waitBeforeStart(now + kLongestWait - milliseconds(5)), milliseconds(5));
  EXPECT_LE(troubles.waitBeforeStart(now + kLongestWait), Nanoseconds{0});
  troubles.noteSuccess();
  EXPECT_EQ(troubles.waitBeforeStart(now), Nanoseconds{0});
}

TEST(SharedPixelPoolTest, a_piece_comes_back_with_its_number) {
  FakeMemories memories;
  SharedPixelPool pool(memories, {});
  auto taken = pool.take(10'000);
  ASSERT_TRUE(taken);
  EXPECT_GE(taken->memory->bytes().size(), 10'000U);
  const PixelBufferNumber number = taken->number;
  { const PixelBuffer picture = pool.pictureIn(std::move(*taken)); }
  EXPECT_EQ(pool.idleBuffers(), 1U);
  taken = pool.take(10'001);
  ASSERT_TRUE(taken);
  EXPECT_EQ(taken->number, number);
  EXPECT_EQ(memories.made, 1);
}

TEST(SharedPixelPoolTest, a_piece_dropped_on_the_way_is_not_lent_again) {
  FakeMemories memories;
  SharedPixelPool pool(memories, {});
  const PixelBufferNumber dropped = pool.take(10'000)->number;
  EXPECT_EQ(pool.idleBuffers(), 0U);
  EXPECT_NE(pool.take(10'000)->number, dropped);
}

TEST(SharedPixelPoolTest, tells_which_pieces_are_gone) {
  FakeMemories memories;
  SharedPixelPool pool(memories, {});
  auto lent = pool.take(5000);
  auto shown = pool.take(5000);
  auto dropped = pool.take(5000);
  auto idle = pool.take(5000);
  const std::vector<PixelBufferNumber> all{lent->number, shown->number, dropped->number, idle->number, 99};
  const PixelBuffer picture = pool.pictureIn(std::move(*shown));
  { const PixelBuffer returned = pool.pictureIn(std::move(*idle)); }
  idle.reset();
  dropped.reset();
  EXPECT_EQ(pool.goneOf(all), (std::vector<PixelBufferNumber>{all[2], 99}));
}

TEST(SharedPixelPoolTest, keeps_only_so_much) {
  FakeMemories memories;
  SharedPixelPool pool(memories, {.idleBuffers = 2, .idleBytes = 1 << 20});
  std::vector<PixelBuffer> pictures;
  for (int i = 0; i < 5; ++i) pictures.push_back(pool.pictureIn(*pool.take(5000)));
  pictures.clear();
  EXPECT_EQ(pool.idleBuffers(), 2U);
  pictures.push_back(pool.pictureIn(*pool.take(2 << 20)));
  pictures.clear();
  EXPECT_EQ(pool.idleBuffers(), 0U);
}

TEST(SharedPixelPoolTest, pictures_may_outlive_the_pool) {
  FakeMemories memories;
  PixelBuffer picture;
  {
    SharedPixelPool pool(memories, {});
    picture = pool.pictureIn(*pool.take(5000));
  }
  EXPECT_EQ(std::as_const(picture).bytes()[4999], std::byte{0});
}

TEST(SharedPixelPoolTest, no_memory_is_nothing) {
  FakeMemories memories;
  memories.none = true;
  SharedPixelPool pool(memories, {});
  EXPECT_FALSE(pool.take(5000));
}

}  // namespace
}  // namespace lumivane
