// Whether the doors are closed, tried from inside by a program of its own (SandboxProbe.cpp).
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

constexpr int kUnknownToThisSystem = 77;

class SandboxTest : public testing::Test {
 protected:
  SandboxTest() { (void)folder_.write("there", "x"); }

  // The lines that the probe says; it writes to a pipe, because no file would take them.
  std::vector<std::string> probe(const std::string& which) {
    const std::string command =
        std::string(std::getenv("SANDBOX_PROBE")) + " " + which + " " + folder_.path();
    FILE* const pipe = ::popen(command.c_str(), "r");
    std::ostringstream said;
    std::array<char, 4096> part{};
    while (const std::size_t got = std::fread(part.data(), 1, part.size(), pipe))
      said.write(part.data(), static_cast<std::streamsize>(got));
    const int status = ::pclose(pipe);
    known_ = !(WIFEXITED(status) && WEXITSTATUS(status) == kUnknownToThisSystem);
    EXPECT_TRUE(!known_ || status == 0) << status;
    std::vector<std::string> lines;
    std::istringstream text(said.str());
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }

  static long countOf(const std::vector<std::string>& lines, std::string_view beginning) {
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return line.starts_with(beginning); });
  }

  void expectUntouched() const {
    struct stat status {};
    ASSERT_EQ(::stat((folder_ / "there").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 1);
    EXPECT_EQ(status.st_mode & 0777, 0644U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()),
                            std::filesystem::directory_iterator()),
              1);
  }

  TemporaryFolder folder_;
  bool known_ = true;
};

TEST_F(SandboxTest, everything_is_closed_but_reading) {
  ASSERT_EQ(::chmod((folder_ / "there").c_str(), 0644), 0);
  const std::vector<std::string> lines = probe("both");
  if (!known_) GTEST_SKIP() << "this system has no Landlock or no filter of system calls";
  EXPECT_EQ(countOf(lines, "reads"), 1);
  EXPECT_EQ(countOf(lines, "has threads"), 1);
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  EXPECT_EQ(countOf(lines, "open "), countOf(lines, "open memory"));  // no limit of memory under sanitizers
#else
  EXPECT_EQ(countOf(lines, "open "), 0) << testing::PrintToString(lines);
#endif
  EXPECT_GE(countOf(lines, "closed "), 22) << testing::PrintToString(lines);
  expectUntouched();
}

TEST_F(SandboxTest, system_calls_alone_keep_files_as_they_are) {
  ASSERT_EQ(::chmod((folder_ / "there").c_str(), 0644), 0);
  const std::vector<std::string> lines = probe("calls");
  if (!known_) GTEST_SKIP() << "this system has no filter of system calls";
  EXPECT_EQ(countOf(lines, "reads"), 1);
  EXPECT_EQ(countOf(lines, "open "), countOf(lines, "open memory")) << testing::PrintToString(lines);
  expectUntouched();
}

// Landlock knows nothing of a file's mode.
TEST_F(SandboxTest, the_rules_of_files_alone_keep_their_content) {
  const std::vector<std::string> lines = probe("files");
  if (!known_) GTEST_SKIP() << "this system has no Landlock";
  EXPECT_EQ(countOf(lines, "reads"), 1);
  EXPECT_EQ(countOf(lines, "open "), countOf(lines, "open mode")) << testing::PrintToString(lines);
}

}  // namespace
}  // namespace lumivane
