#include "platform/linux/SystemLog.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <sstream>
#include <thread>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/JournalLog.h"
#include "platform/linux/StderrLog.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VirtualTime.h"

namespace lumivane {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

constexpr WallTime kMoment{std::chrono::milliseconds(1'795'260'600'123)};
const std::string kTime = "2026-11-21T11:30:00.123Z";

// Both ends of a pipe: what is written can be read back.
struct Pipe {
  Pipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
    out = FileDescriptor(ends[0]);
    in = FileDescriptor(ends[1]);
  }
  // Everything up to now; nothing can be written afterwards.
  std::string drained() {
    in = FileDescriptor();
    std::string text;
    std::array<char, 4096> chunk{};
    for (ssize_t got = 0; (got = read(out.get(), chunk.data(), chunk.size())) > 0;) {
      text.append(chunk.data(), static_cast<std::size_t>(got));
    }
    return text;
  }
  FileDescriptor out;
  FileDescriptor in;
};

TEST(LogLine, HasTimeLevelAndTheTextAsItIs) {
  EXPECT_EQ(logLine(kMoment, LogLevel::Information, "LumivaneApp starting"),
            kTime + " information LumivaneApp starting\n");
  EXPECT_EQ(logLine(kMoment, LogLevel::Error, "  No error found!"), kTime + " error   No error found!\n");
  EXPECT_EQ(logLine(kMoment, LogLevel::Error, ""), kTime + " error \n");
  EXPECT_EQ(logLine(kMoment, LogLevel::Information, "Köln \\x0A"), kTime + " information Köln \\x0A\n");
}

TEST(LogLine, TimesBeforeTheEpochAreInOrderAsWell) {
  EXPECT_EQ(logLine(WallTime(std::chrono::milliseconds(-1)), LogLevel::Error, "x"),
            "1969-12-31T23:59:59.999Z error x\n");
}

TEST(LogLine, IndentsFurtherLines) {
  EXPECT_EQ(logLine(kMoment, LogLevel::Error, "one\n2026-11-21T09:30:00.123Z error two"),
            kTime + " error one\n    2026-11-21T09:30:00.123Z error two\n");
  EXPECT_EQ(logLine(kMoment, LogLevel::Information, "\n"), kTime + " information \n\n");
  EXPECT_EQ(logLine(kMoment, LogLevel::Information, "a\n\nb\n"), kTime + " information a\n\n    b\n\n");
}

TEST(LogLine, ControlCharactersCannotSteerATerminal) {
  EXPECT_EQ(logLine(kMoment, LogLevel::Error, "a\x1B[2Jb"), kTime + " error a\\x1B[2Jb\n");
}

TEST(LogLine, WhatIsNotUtf8BecomesAscii) {
  EXPECT_EQ(logLine(kMoment, LogLevel::Error, "K\xF6ln \xC3\xA4"), kTime + " error K?ln ??\n");
}

TEST(StderrLogTest, WritesALineAnEntry) {
  VirtualClock clock;
  Pipe pipe;
  StderrLog log(clock, pipe.in.get());
  log.information("one");
  log.error("two");
  EXPECT_EQ(pipe.drained(), "2027-01-15T08:00:00.000Z information one\n2027-01-15T08:00:00.000Z error two\n");
}

TEST(StderrLogTest, SurvivesAClosedDescriptor) {
  VirtualClock clock;
  StderrLog log(clock, -1);
  log.error("lost");
}

TEST(StderrLogTest, EntriesOfThreadsNeverMix) {
  VirtualClock clock;
  Pipe pipe;
  StderrLog log(clock, pipe.in.get());
  std::string text;
  {
    std::jthread reader([&] {
      std::array<char, 4096> chunk{};
      for (ssize_t got = 0; (got = read(pipe.out.get(), chunk.data(), chunk.size())) > 0;) {
        text.append(chunk.data(), static_cast<std::size_t>(got));
      }
    });
    {
      std::vector<std::jthread> writers;
      for (char c = 'a'; c < 'e'; ++c) {
        writers.emplace_back([&log, c] {
          for (int i = 0; i < 50; ++i) log.information(std::string(5000, c));
        });
      }
    }
    pipe.in = FileDescriptor();
  }
  std::istringstream lines(text);
  std::size_t count = 0;
  const std::size_t start = std::string("2027-01-15T08:00:00.000Z information ").size();
  for (std::string line; std::getline(lines, line); ++count) {
    ASSERT_EQ(line.size(), start + 5000);
    ASSERT_EQ(line.find_first_not_of(line[start], start), std::string::npos);
  }
  EXPECT_EQ(count, 200U);
}

TEST(JournalFields, NameSubsystemCategoryAndLevel) {
  EXPECT_THAT(journalFields("Pictures: 3\nnext", LogLevel::Information),
              ElementsAre("MESSAGE=Pictures: 3\nnext", "PRIORITY=6", "SYSLOG_IDENTIFIER=lumivane",
                          "LUMIVANE_SUBSYSTEM=de.orvik.LumivaneApp", "LUMIVANE_CATEGORY=LumivaneApp",
                          "LUMIVANE_LEVEL=information"));
  const auto fields = journalFields("K\xF6ln", LogLevel::Error);
  EXPECT_THAT(fields, Contains("PRIORITY=3"));
  EXPECT_THAT(fields, Contains("LUMIVANE_LEVEL=error"));
  EXPECT_THAT(fields, Contains("MESSAGE=K?ln"));
}

class MakeSystemLog : public ::testing::Test {
 protected:
  // What listens like a journal.
  std::string listen() {
    const std::string path = folder_ / "socket";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    journal_ = FileDescriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(bind(journal_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    return path;
  }
  static bool isJournal(const std::unique_ptr<Log>& log) {
    return dynamic_cast<JournalLog*>(log.get()) != nullptr;
  }

  TemporaryFolder folder_;
  FileDescriptor journal_;
  VirtualClock clock_;
};

TEST_F(MakeSystemLog, TakesTheJournalWhereOneListens) {
  EXPECT_TRUE(isJournal(makeSystemLog({}, clock_, listen())));
  EXPECT_TRUE(isJournal(makeSystemLog({{"LUMIVANE_LOG", "journal"}}, clock_, folder_ / "socket")));
}

TEST_F(MakeSystemLog, TakesStandardErrorWhereNoneDoes) {
  EXPECT_FALSE(isJournal(makeSystemLog({}, clock_, folder_ / "none")));
  EXPECT_FALSE(isJournal(makeSystemLog({}, clock_, folder_.write("file", ""))));
}

TEST_F(MakeSystemLog, TakesStandardErrorWhereTheUserWantsIt) {
  EXPECT_FALSE(isJournal(makeSystemLog({{"LUMIVANE_LOG", "stderr"}}, clock_, listen())));
}

}  // namespace
}  // namespace lumivane
