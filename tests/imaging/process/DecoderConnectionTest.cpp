// What a decoder process may answer, and how much of it is believed.
#include <gtest/gtest.h>

#include <random>

#include "imaging/process/DecoderConnection.h"
#include "tests/support/FakeChildProgram.h"
#include "tests/support/LevelPixels.h"

namespace lumivane {
namespace {

using Message = FakeChildPrograms::Message;
using Messages = std::vector<Message>;

constexpr Nanoseconds kLimit = std::chrono::seconds(20);

Message said(DecoderAnswer answer) {
  return encoded(answer);
}

class DecoderConnectionTest : public testing::Test {
 protected:
  // A child that answers a decode with one wish for memory and then with what `decoded` says.
  FakeChildPrograms::Answer decoding(std::uint64_t wish, DecodeAnswer decoded) {
    return [wish, decoded](std::span<const std::byte> message) mutable -> Messages {
      const auto request = requestIn(message);
      if (const auto* decode = std::get_if<DecodeRequest>(&*request))
        return {said(MemoryWish{decode->request, wish})};
      if (const auto* loan = std::get_if<MemoryLoan>(&*request)) {
        decoded.request = loan->request;
        return {said(decoded)};
      }
      return {};
    };
  }

  void connect(FakeChildPrograms::Answer answer) {
    connection_.reset();  // before what it came from
    programs_ = std::make_unique<FakeChildPrograms>(clock_, std::move(answer));
    connection_ = std::make_unique<DecoderConnection>(std::move(programs_->start()).value(), pool_, clock_);
  }

  template <typename Answer>
  static std::optional<DecoderTrouble> troubleOf(const Answered<Answer>& answered) {
    const auto* trouble = std::get_if<DecoderTrouble>(&answered);
    return trouble != nullptr ? std::optional(*trouble) : std::nullopt;
  }

  std::optional<DecoderTrouble> troubleOfDecode(std::uint64_t wish, const DecodeAnswer& decoded,
                                                int maxPixelSize) {
    connect(decoding(wish, decoded));
    return troubleOf(connection_->decode(maxPixelSize, kLimit));
  }

  VirtualClock clock_;
  FakeMemories memories_;
  std::shared_ptr<SharedPixelPool> pool_ =
      std::make_shared<SharedPixelPool>(memories_, SharedPixelPool::Limits{});
  std::unique_ptr<FakeChildPrograms> programs_;
  std::unique_ptr<DecoderConnection> connection_;
};

TEST_F(DecoderConnectionTest, a_picture_lies_in_the_memory_that_was_lent) {
  connect(decoding(packedLevelsBytes({300, 200}), {0, true, {300, 200}, 6, true}));
  auto answered = connection_->decode(8192, kLimit);
  ASSERT_FALSE(troubleOf(answered));
  const BitmapRef bitmap = std::get<BitmapRef>(answered);
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(bitmap->storedSize(), (SizePx{300, 200}));
  EXPECT_EQ(bitmap->displaySize(), (SizePx{200, 300}));
  EXPECT_TRUE(bitmap->opaque());
  EXPECT_EQ(bitmap->levels().size(), packedLevels({300, 200}).size());
  EXPECT_EQ(memories_.made, 1);
}

TEST_F(DecoderConnectionTest, a_picture_that_cannot_be_decoded_gives_its_memory_back) {
  connect(decoding(5000, {0, false, {}, 1, false}));
  auto answered = connection_->decode(8192, kLimit);
  ASSERT_FALSE(troubleOf(answered));
  EXPECT_FALSE(std::get<BitmapRef>(answered));
  EXPECT_EQ(pool_->idleBuffers(), 1U);
}

TEST_F(DecoderConnectionTest, a_picture_is_no_larger_than_what_was_asked_for) {
  EXPECT_EQ(troubleOfDecode(packedLevelsBytes({64, 64}), {0, true, {64, 64}, 1, true}, 64), std::nullopt);
  EXPECT_EQ(troubleOfDecode(packedLevelsBytes({64, 64}), {0, true, {65, 1}, 1, true}, 64),
            DecoderTrouble::Nonsense);
  EXPECT_EQ(troubleOfDecode(4096, {0, true, {1, 65}, 1, true}, 64), DecoderTrouble::Nonsense);
}

TEST_F(DecoderConnectionTest, a_picture_is_no_larger_than_its_memory) {
  for (const SizePx size : {SizePx{8192, 8192}, SizePx{1025, 1}, SizePx{40, 40}})
    EXPECT_EQ(troubleOfDecode(4096, {0, true, size, 1, true}, 8192), DecoderTrouble::Nonsense) << size.width;
  const std::uint64_t enough = packedPlanes({64, 64}, Chroma::Half).bytes;
  EXPECT_FALSE(troubleOfDecode(enough, {0, true, {64, 64}, 1, true, true, Chroma::Half}, 64));
  EXPECT_EQ(troubleOfDecode(enough, {0, true, {64, 64}, 1, true, true, Chroma::Full}, 64),
            DecoderTrouble::Nonsense);
  EXPECT_EQ(pool_->idleBuffers(), 0U);  // whoever answers so may still write into it
}

TEST_F(DecoderConnectionTest, no_more_memory_is_lent_than_a_picture_can_need) {
  const DecodeAnswer fine{0, true, {1, 1}, 1, true};
  EXPECT_EQ(troubleOfDecode(packedLevelsBytes({64, 64}) + 1, fine, 64), DecoderTrouble::Nonsense);
  EXPECT_EQ(troubleOfDecode(std::uint64_t{1} << 63, fine, 8192), DecoderTrouble::Nonsense);
  EXPECT_EQ(troubleOfDecode(0, fine, 8192), DecoderTrouble::Nonsense);
  EXPECT_EQ(memories_.made, 0);
}

TEST_F(DecoderConnectionTest, memory_is_lent_once_for_a_picture) {
  connect([](std::span<const std::byte> message) -> Messages {
    const auto request = requestIn(message);
    const auto* decode = std::get_if<DecodeRequest>(&*request);
    const RequestNumber number = decode != nullptr ? decode->request : std::get<MemoryLoan>(*request).request;
    return {said(MemoryWish{number, 4096})};
  });
  EXPECT_EQ(troubleOf(connection_->decode(8192, kLimit)), DecoderTrouble::Nonsense);
  EXPECT_EQ(memories_.made, 1);
}

TEST_F(DecoderConnectionTest, a_picture_without_memory_is_none) {
  connect([](std::span<const std::byte> message) -> Messages {
    return {said(DecodeAnswer{std::get<DecodeRequest>(*requestIn(message)).request, true, {1, 1}, 1, true})};
  });
  EXPECT_EQ(troubleOf(connection_->decode(8192, kLimit)), DecoderTrouble::Nonsense);
}

TEST_F(DecoderConnectionTest, where_there_is_no_memory_the_process_is_told) {
  memories_.none = true;
  bool told = false;
  connect([&told](std::span<const std::byte> message) -> Messages {
    const auto request = requestIn(message);
    if (const auto* decode = std::get_if<DecodeRequest>(&*request))
      return {said(MemoryWish{decode->request, 4096})};
    const auto& loan = std::get<MemoryLoan>(*request);
    told = loan.buffer == 0;
    return {said(DecodeAnswer{loan.request, false, {}, 1, false})};
  });
  EXPECT_FALSE(troubleOf(connection_->decode(8192, kLimit)));
  EXPECT_TRUE(told);
}

TEST_F(DecoderConnectionTest, the_process_learns_which_memory_exists_no_more) {
  std::vector<MemoryLoan> loans;
  connect([&loans](std::span<const std::byte> message) -> Messages {
    const auto request = requestIn(message);
    if (const auto* decode = std::get_if<DecodeRequest>(&*request))
      return {said(MemoryWish{decode->request, 4096})};
    loans.push_back(std::get<MemoryLoan>(*request));
    return {said(DecodeAnswer{loans.back().request, true, {1, 1}, 1, true})};
  });
  pool_ = nullptr;  // the connection's own share is the last
  (void)connection_->decode(8192, kLimit);
  BitmapRef kept = std::get<BitmapRef>(connection_->decode(8192, kLimit));
  const BitmapRef other = std::get<BitmapRef>(connection_->decode(8192, kLimit));
  ASSERT_EQ(loans.size(), 3U);
  EXPECT_EQ(loans[0].buffer, loans[1].buffer);  // dropped at once, lent again
  EXPECT_NE(loans[1].buffer, loans[2].buffer);
  EXPECT_TRUE(loans[2].gone.empty());
}

TEST_F(DecoderConnectionTest, an_answer_to_another_request_is_nonsense) {
  connect([](std::span<const std::byte>) -> Messages { return {said(OpenAnswer{77, true, {}, {}})}; });
  EXPECT_EQ(troubleOf(connection_->open("/a", kLimit)), DecoderTrouble::Nonsense);
  connect([](std::span<const std::byte>) -> Messages { return {said(MeasureAnswer{1, {}})}; });
  EXPECT_EQ(troubleOf(connection_->open("/a", kLimit)), DecoderTrouble::Nonsense);
}

TEST_F(DecoderConnectionTest, as_many_sizes_as_paths) {
  connect([](std::span<const std::byte> message) -> Messages {
    return {said(MeasureAnswer{std::get<MeasureRequest>(*requestIn(message)).request, {SizePx{1, 1}}})};
  });
  EXPECT_FALSE(troubleOf(connection_->measure({"/a"}, kLimit)));
  EXPECT_EQ(troubleOf(connection_->measure({"/a", "/b"}, kLimit)), DecoderTrouble::Nonsense);
}

TEST_F(DecoderConnectionTest, whoever_is_silent_is_waited_for_as_long_as_allowed) {
  connect([](std::span<const std::byte>) -> Messages { return {}; });
  const MediaTime before = clock_.now();
  EXPECT_EQ(troubleOf(connection_->open("/a", kLimit)), DecoderTrouble::TooSlow);
  EXPECT_EQ(clock_.now() - before, kLimit);
  EXPECT_EQ(troubleOf(connection_->decode(8192, kLimit)), DecoderTrouble::TooSlow);
}

TEST_F(DecoderConnectionTest, whoever_ends_has_ended) {
  connect([](std::span<const std::byte>) -> Messages { return {Message()}; });
  EXPECT_EQ(troubleOf(connection_->open("/a", kLimit)), DecoderTrouble::Ended);
}

TEST_F(DecoderConnectionTest, a_process_of_another_version_is_not_talked_to) {
  connect([](std::span<const std::byte>) -> Messages {
    return {said(HelloAnswer{kDecoderProtocol + 1, true, true})};
  });
  (void)connection_->isQuietAndThere();
  connection_->close();  // makes it speak
  EXPECT_EQ(troubleOf(connection_->hello(kLimit)), DecoderTrouble::Nonsense);
}

TEST_F(DecoderConnectionTest, whoever_speaks_unasked_is_not_quiet) {
  connect([](std::span<const std::byte>) -> Messages { return {said(MemoryWish{0, 1})}; });
  EXPECT_TRUE(connection_->isQuietAndThere());
  connection_->close();
  EXPECT_FALSE(connection_->isQuietAndThere());
}

// Answers that are right but for a few bits, and answers that are random: no crash, and no picture outside its memory.
TEST_F(DecoderConnectionTest, whatever_a_process_says_is_survived) {
  std::mt19937 random(4);  // NOLINT(cert-msc51-cpp): the same answers every time
  const auto spoiled = [&random](Message message) {
    for (unsigned flips = random() % 4; flips > 0; --flips)
      message[random() % message.size()] ^= static_cast<std::byte>(1U << random() % 8);
    return message;
  };
  int pictures = 0;
  int inPlanes = 0;
  int troubles = 0;
  for (int i = 0; i < 20'000; ++i) {
    connect([&](std::span<const std::byte> message) -> Messages {
      const auto request = requestIn(message);
      if (const auto* decode = std::get_if<DecodeRequest>(&*request))
        return {spoiled(said(MemoryWish{decode->request, random() % 32768}))};
      const auto side = [&] {
        return static_cast<int>(random() % 2 == 0 ? random() % 64 : 64 + random() % 9);
      };
      const SizePx size{side(), side()};
      return {spoiled(said(DecodeAnswer{std::get<MemoryLoan>(*request).request, true, size,
                                        static_cast<int>(random() % 10), true, random() % 2 == 0,
                                        static_cast<Chroma>(random() % 5)}))};
    });
    const auto answered = connection_->decode(72, kLimit);
    troubles += troubleOf(answered) ? 1 : 0;
    const auto* bitmap = std::get_if<BitmapRef>(&answered);
    if (bitmap == nullptr || !*bitmap) continue;
    ++pictures;
    inPlanes += (*bitmap)->planes() ? 1 : 0;
    for (std::size_t level = 0; level < (*bitmap)->levels().size(); ++level)
      EXPECT_FALSE(levelPixels(**bitmap, level).empty());
  }
  EXPECT_GT(pictures, 100);
  EXPECT_GT(inPlanes, 10);
  EXPECT_GT(troubles, 100);
}

}  // namespace
}  // namespace lumivane
