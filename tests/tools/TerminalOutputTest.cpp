// What the companion program writes to a terminal beside its answers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tools/CollationLocale.h"
#include "tools/ProgressLine.h"
#include "tools/TerminalLog.h"

namespace lumivane {
namespace {

TEST(ProgressLine, BarsGrow) {
  EXPECT_EQ(progressBar(0, 3), "[..............................] 0 / 3");
  EXPECT_EQ(progressBar(1, 3), "[##########....................] 1 / 3");
  EXPECT_EQ(progressBar(3, 3), "[##############################] 3 / 3");
  EXPECT_EQ(progressBar(5, 3), "[##############################] 3 / 3");
  EXPECT_EQ(progressBar(0, 0), "[##############################] 0 / 0");
}

TEST(ProgressLine, LeavesNothingBehind) {
  std::ostringstream out;
  { ProgressLine(out, true).show("working"); }
  EXPECT_EQ(out.str(), "\rworking\x1B[K\r\x1B[K");
}

TEST(ProgressLine, WithoutATerminalNothingIsWritten) {
  std::ostringstream out;
  {
    ProgressLine progress(out, false);
    progress.show("working");
    progress.showShare(1, 2);
  }
  EXPECT_EQ(out.str(), "");
}

TEST(TerminalLog, WritesErrorsOnly) {
  std::ostringstream out;
  TerminalLog log(out, false);
  log.information("quiet");
  log.error("Image gone: a\x1B[31m!\n");
  EXPECT_EQ(out.str(), "lumivane: Image gone: a\\x1B[31m!\n");
  EXPECT_EQ(log.errors(), 1U);
}

TEST(CollationLocale, TheStrongestVariableThatIsSetDecides) {
  EXPECT_EQ(collationLocale({}), "");
  EXPECT_EQ(collationLocale({{"LANG", "de_DE.UTF-8"}}), "de_DE");
  EXPECT_EQ(collationLocale({{"LANG", "de_DE.UTF-8"}, {"LC_COLLATE", "sv_SE"}}), "sv_SE");
  EXPECT_EQ(collationLocale({{"LANG", "de_DE@euro"}, {"LC_ALL", "C.UTF-8"}}), "");
  EXPECT_EQ(collationLocale({{"LANG", "POSIX"}, {"LC_ALL", ""}}), "");
}

}  // namespace
}  // namespace lumivane
