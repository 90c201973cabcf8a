#include "imaging/decode/PixelPool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace lumivane {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

TEST(PixelPool, hands_out_exactly_what_was_asked_for) {
  PixelPool pool;
  EXPECT_EQ(pool.take(1).bytes().size(), 1U);
  EXPECT_EQ(pool.take(kMiB + 1).bytes().size(), kMiB + 1);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pool.take(5 * kMiB).bytes().data()) % 64, 0U);
}

TEST(PixelPool, lends_a_returned_buffer_again) {
  PixelPool pool;
  const std::byte* first = nullptr;
  {
    PixelBuffer buffer = pool.take(8 * kMiB);
    first = buffer.bytes().data();
    EXPECT_EQ(pool.idleBuffers(), 0U);
  }
  EXPECT_EQ(pool.idleBuffers(), 1U);
  // A picture of nearly the same size may have it too.
  const PixelBuffer again = pool.take(8 * kMiB - 1000);
  EXPECT_EQ(again.bytes().data(), first);
  EXPECT_EQ(again.bytes().size(), 8 * kMiB - 1000);
  EXPECT_EQ(pool.idleBuffers(), 0U);
}

TEST(PixelPool, does_not_waste_a_large_buffer_on_a_small_picture) {
  PixelPool pool;
  (void)pool.take(8 * kMiB);
  const PixelBuffer small = pool.take(kMiB);
  EXPECT_EQ(pool.idleBuffers(), 1U);
}

TEST(PixelPool, keeps_a_bounded_number_of_buffers_the_newest) {
  PixelPool pool({.idleBuffers = 2, .idleBytes = 100 * kMiB});
  std::vector<PixelBuffer> lent;
  for (std::size_t i = 1; i <= 4; ++i) lent.push_back(pool.take(i * kMiB));
  for (PixelBuffer& buffer : lent) buffer = {};
  EXPECT_EQ(pool.idleBuffers(), 2U);
  EXPECT_EQ(pool.idleBytes(), pixelPoolSizeClass(3 * kMiB) + pixelPoolSizeClass(4 * kMiB));
}

TEST(PixelPool, keeps_a_bounded_number_of_bytes) {
  PixelPool pool({.idleBuffers = 10, .idleBytes = 5 * kMiB});
  (void)pool.take(6 * kMiB);
  EXPECT_EQ(pool.idleBuffers(), 0U);
  (void)pool.take(4 * kMiB);
  EXPECT_EQ(pool.idleBytes(), 4 * kMiB);
}

TEST(PixelPool, trim_frees_what_is_idle) {
  PixelPool pool;
  (void)pool.take(kMiB);
  pool.trim();
  EXPECT_EQ(pool.idleBuffers(), 0U);
}

TEST(PixelPool, lent_buffer_outlives_the_pool) {
  PixelBuffer buffer;
  {
    PixelPool pool;
    buffer = pool.take(kMiB);
  }
  std::fill(buffer.bytes().begin(), buffer.bytes().end(), std::byte{1});
  EXPECT_EQ(buffer.bytes()[kMiB - 1], std::byte{1});
}

TEST(PixelPool, absurd_requests_get_nothing) {
  PixelPool pool;
  EXPECT_TRUE(pool.take(0).bytes().empty());
  EXPECT_TRUE(pool.take(std::size_t{1} << 60).bytes().empty());
  EXPECT_TRUE(pool.take(~std::size_t{0}).bytes().empty());
}

TEST(PixelPool, size_classes_waste_at_most_an_eighth) {
  for (std::size_t bytes = 4096; bytes < 300 * kMiB; bytes = bytes * 17 / 16 + 1) {
    EXPECT_GE(pixelPoolSizeClass(bytes), bytes);
    EXPECT_LE(pixelPoolSizeClass(bytes), bytes + bytes / 8 + 1) << bytes;
    EXPECT_EQ(pixelPoolSizeClass(pixelPoolSizeClass(bytes)), pixelPoolSizeClass(bytes));
  }
}

TEST(PixelPool, buffers_come_and_go_on_many_threads) {
  PixelPool pool({.idleBuffers = 2, .idleBytes = 64 * kMiB});
  std::vector<std::jthread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&pool, t] {
      for (int i = 0; i < 200; ++i) {
        PixelBuffer buffer = pool.take(kMiB / 4 * static_cast<std::size_t>(1 + (i + t) % 3));
        std::fill_n(buffer.bytes().begin(), 4096, static_cast<std::byte>(t));
        ASSERT_TRUE(std::all_of(buffer.bytes().begin(), buffer.bytes().begin() + 4096,
                                [t](std::byte b) { return b == static_cast<std::byte>(t); }));
        if (i % 50 == 0) pool.trim();
      }
    });
  }
  threads.clear();
  EXPECT_LE(pool.idleBuffers(), 2U);
}

}  // namespace
}  // namespace lumivane
