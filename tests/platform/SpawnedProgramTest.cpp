// Children that are real programs, but none of ours: what is told of their ends, and what is left of them.
#include "platform/linux/SpawnedProgram.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <csignal>

#include <array>
#include <filesystem>
#include <thread>

#include "platform/linux/DecoderProgram.h"
#include "platform/linux/MessageSocket.h"
#include "platform/linux/SealedMemory.h"
#include "tests/support/RealClock.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using Bytes = std::vector<std::byte>;

class MessageSocketTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends_.data()), 0);
    receiver_ = std::make_unique<MessageReceiver>(ends_[1], MessageReceiver::Descriptors::Taken);
  }

  MessageArrival next(Bytes& message) {
    MessageArrival arrival = MessageArrival::Nothing;
    while (arrival == MessageArrival::Nothing)
      arrival = receiver_->receive(message, std::chrono::seconds(60));
    return arrival;
  }
  void sendRaw(const std::string& packet) const {
    EXPECT_EQ(::send(ends_[0], packet.data(), packet.size(), 0), static_cast<ssize_t>(packet.size()));
  }

  std::array<int, 2> ends_{-1, -1};
  std::unique_ptr<MessageReceiver> receiver_;
};

TEST_F(MessageSocketTest, messages_arrive_whole) {
  for (const std::size_t size : {1U, 32768U, 32769U, 100'000U}) {
    Bytes sent(size);
    for (std::size_t i = 0; i < size; ++i) sent[i] = static_cast<std::byte>(i * 7);
    ASSERT_TRUE(sendMessage(ends_[0], sent, -1, Waiting::Never));
    Bytes came;
    ASSERT_EQ(next(came), MessageArrival::Message);
    EXPECT_EQ(came, sent);
  }
}

TEST_F(MessageSocketTest, a_descriptor_comes_along) {
  auto memory = SealedMemory::make(5000);
  ASSERT_TRUE(memory);
  const int descriptor = static_cast<const SealedMemory&>(*memory.value()).descriptor();
  ASSERT_TRUE(sendMessage(ends_[0], Bytes(10), descriptor, Waiting::Never));
  Bytes message;
  ASSERT_EQ(next(message), MessageArrival::Message);
  const FileDescriptor came = receiver_->takeDescriptor();
  ASSERT_TRUE(came.isOpen());
  void* const mapped = ::mmap(nullptr, 5000, PROT_READ | PROT_WRITE, MAP_SHARED, came.get(), 0);
  ASSERT_NE(mapped, MAP_FAILED);
  static_cast<char*>(mapped)[4999] = 42;
  EXPECT_EQ(memory.value()->bytes()[4999], std::byte{42});
  EXPECT_NE(::ftruncate(came.get(), 10), 0);  // nobody can cut it off under us
  EXPECT_NE(::ftruncate(came.get(), 100'000), 0);
  ::munmap(mapped, 5000);
}

TEST_F(MessageSocketTest, whoever_takes_no_descriptors_has_none_left_open) {
  receiver_ = std::make_unique<MessageReceiver>(ends_[1], MessageReceiver::Descriptors::Refused);
  const auto openNow = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
  };
  const auto before = openNow();
  ASSERT_TRUE(sendMessage(ends_[0], Bytes(10), 0, Waiting::Never));
  Bytes message;
  EXPECT_EQ(next(message), MessageArrival::Message);
  EXPECT_FALSE(receiver_->takeDescriptor().isOpen());
  EXPECT_EQ(openNow(), before);
}

TEST_F(MessageSocketTest, packets_that_break_the_rules_end_the_line) {
  for (const std::string& packet :
       {std::string(1, '\0'), std::string(1, '\1'), std::string("\2abc"), std::string(40'000, '\1')}) {
    sendRaw(packet);
    Bytes message;
    EXPECT_EQ(next(message), MessageArrival::Gone) << packet.size();
  }
}

TEST_F(MessageSocketTest, a_message_without_end_ends_the_line) {
  Bytes message;
  MessageArrival arrival = MessageArrival::Nothing;
  int packets = 0;
  for (; arrival == MessageArrival::Nothing && packets < 100; ++packets) {
    sendRaw(std::string(32769, '\1'));
    arrival = receiver_->receive(message, std::chrono::seconds(60));
  }
  EXPECT_EQ(arrival, MessageArrival::Gone);
  EXPECT_EQ(packets, 33);
}

TEST_F(MessageSocketTest, nobody_at_the_other_end_is_told) {
  ::close(std::exchange(ends_[0], -1));
  Bytes message;
  EXPECT_EQ(next(message), MessageArrival::Gone);
  EXPECT_FALSE(sendMessage(ends_[1], Bytes(10), -1, Waiting::Never));
}

TEST_F(MessageSocketTest, whoever_does_not_read_is_not_waited_for) {
  bool sent = true;
  for (int i = 0; i < 1000 && sent; ++i) sent = sendMessage(ends_[0], Bytes(30'000), -1, Waiting::Never);
  EXPECT_FALSE(sent);
}

// --- Programs ---

ProgramToSpawn shell(const std::string& script) {
  return {"/bin/sh", {"-c", script}, {"PATH=/usr/bin:/bin", "GREETING=hello"}};
}

std::size_t openDescriptors() {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                                std::filesystem::directory_iterator()));
}

MessageArrival nextOf(ChildProgram& child, Bytes& message) {
  MessageArrival arrival = MessageArrival::Nothing;
  while (arrival == MessageArrival::Nothing) arrival = child.receive(message, std::chrono::seconds(60));
  return arrival;
}

bool allEndSoon(SpawnedPrograms& programs) {
  const RealClock clock;
  const MediaTime deadline = clock.now() + std::chrono::seconds(60);
  while (programs.ending() > 0 && clock.now() < deadline) std::this_thread::yield();
  return programs.ending() == 0;
}

TEST(SpawnedProgramTest, a_program_that_ends_is_gone) {
  SpawnedPrograms programs(shell("exit 3"));
  const auto child = std::move(programs.start()).value();
  Bytes message;
  EXPECT_EQ(nextOf(*child, message), MessageArrival::Gone);
}

TEST(SpawnedProgramTest, a_program_that_is_not_there_is_an_error) {
  SpawnedPrograms programs({"/no/such/program", {}, {}});
  const auto child = programs.start();
  ASSERT_FALSE(child);
  EXPECT_NE(child.error().find("/no/such/program cannot be started"), std::string::npos);
}

TEST(SpawnedProgramTest, an_update_does_not_change_the_program_that_is_started) {
  const TemporaryFolder folder;
  std::filesystem::copy_file("/bin/sh", folder / "program");
  SpawnedPrograms programs({folder / "program", {"-c", "printf '\\000ok' >&3"}, {"PATH=/usr/bin:/bin"}});
  std::filesystem::rename(folder.write("update", "not even a program"), folder / "program");
  for (int start = 0; start < 2; ++start) {
    const auto child = std::move(programs.start()).value();
    Bytes message;
    ASSERT_EQ(nextOf(*child, message), MessageArrival::Message);
    EXPECT_EQ(message, (Bytes{std::byte{'o'}, std::byte{'k'}}));
  }
}

TEST(SpawnedProgramTest, a_program_that_comes_later_is_started_by_its_name) {
  const TemporaryFolder folder;
  SpawnedPrograms programs({folder / "program", {"-c", "printf '\\000ok' >&3"}, {"PATH=/usr/bin:/bin"}});
  EXPECT_FALSE(programs.start());
  std::filesystem::copy_file("/bin/sh", folder / "program");
  const auto child = std::move(programs.start()).value();
  Bytes message;
  EXPECT_EQ(nextOf(*child, message), MessageArrival::Message);
}

// The script says so itself, in a packet as MessageSocket knows them. What it opens to look has gone again when it looks.
TEST(SpawnedProgramTest, a_program_has_its_line_and_nothing_else_of_ours) {
  const FileDescriptor left(::dup(0));  // not closed on exec, as libraries leave them
  SpawnedPrograms programs(
      shell("for f in /proc/$$/fd/*; do test -e $f && n=$((n+1)); done; "
            "test $n = 4 && test -S /proc/$$/fd/3 && test \"$GREETING\" = hello && test -z \"$HOME\" && "
            "printf '\\000ok' >&3"));
  const auto child = std::move(programs.start()).value();
  Bytes message;
  ASSERT_EQ(nextOf(*child, message), MessageArrival::Message);
  EXPECT_EQ(message, (Bytes{std::byte{'o'}, std::byte{'k'}}));
}

TEST(SpawnedProgramTest, a_stopped_program_is_ended_without_waiting) {
  SpawnedPrograms programs(shell("kill -STOP $$"));
  std::move(programs.start()).value().reset();
  EXPECT_TRUE(allEndSoon(programs));
}

// Thirty megabytes in a variable, then a message that they are there.
TEST(SpawnedProgramTest, the_most_memory_that_one_had_is_remembered) {
  constexpr std::size_t kText = 30'000'000;
  SpawnedPrograms programs(
      shell("x=$(head -c 30000000 /dev/zero | tr '\\000' x); printf '\\000ok' >&3; kill -STOP $$"));
  EXPECT_EQ(programs.peakMemoryBytes(), 0U);
  auto child = std::move(programs.start()).value();
  Bytes message;
  ASSERT_EQ(nextOf(*child, message), MessageArrival::Message);
  EXPECT_GT(programs.peakMemoryBytes(), kText);
  child.reset();
  EXPECT_GT(programs.peakMemoryBytes(), kText) << "though it has ended";
  EXPECT_TRUE(allEndSoon(programs));
}

TEST(SpawnedProgramTest, a_thousand_starts_leave_nothing_behind) {
  SpawnedPrograms programs({"/bin/true", {}, {}});
  (void)programs.start();
  ASSERT_TRUE(allEndSoon(programs));
  const std::size_t before = openDescriptors();
  for (int i = 0; i < 1000; ++i) ASSERT_TRUE(programs.start());
  EXPECT_TRUE(allEndSoon(programs));
  EXPECT_EQ(openDescriptors(), before);
}

TEST(DecoderProgramTest, a_quarter_of_the_memory_and_two_gibibytes_at_least) {
  constexpr std::uint64_t kGiB = std::uint64_t{1} << 30;
  EXPECT_EQ(decoderMemoryBytes(64 * kGiB), 16 * kGiB);
  EXPECT_EQ(decoderMemoryBytes(4 * kGiB), 2 * kGiB);
  EXPECT_EQ(decoderMemoryBytes(0), 2 * kGiB);
}

TEST(DecoderProgramTest, nothing_of_our_environment_goes_along_that_is_not_needed) {
  const ProgramToSpawn program =
      decoderProgram("/opt/bin", {{"LD_LIBRARY_PATH", "/opt/lib"}, {"SECRET", "x"}, {"HOME", "/h"}});
  EXPECT_EQ(program.environment, std::vector<std::string>{"LD_LIBRARY_PATH=/opt/lib"});
  EXPECT_EQ(program.path, "/opt/bin/../libexec/lumivane/lumivane-decoder");
}

}  // namespace
}  // namespace lumivane
