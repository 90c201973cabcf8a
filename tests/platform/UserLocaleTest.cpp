#include "platform/linux/UserLocale.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/ProgramFolder.h"

namespace lumivane {
namespace {

TEST(UserLocale, TheStrongestVariableThatIsSetDecides) {
  EXPECT_EQ(userLocale({}, "LC_MESSAGES"), "");
  EXPECT_EQ(userLocale({{"LANG", "de_DE.UTF-8"}}, "LC_MESSAGES"), "de_DE");
  EXPECT_EQ(userLocale({{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "sv_SE"}}, "LC_MESSAGES"), "sv_SE");
  EXPECT_EQ(userLocale({{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "sv_SE"}}, "LC_COLLATE"), "de_DE");
  EXPECT_EQ(userLocale({{"LC_MESSAGES", "sv_SE"}, {"LC_ALL", "fr_FR@euro"}}, "LC_MESSAGES"), "fr_FR");
}

TEST(UserLocale, TheBareSystemsLanguageIsNone) {
  EXPECT_EQ(userLocale({{"LANG", "de_DE"}, {"LC_ALL", "C.UTF-8"}}, "LC_MESSAGES"), "");
  EXPECT_EQ(userLocale({{"LANG", "POSIX"}, {"LC_ALL", ""}}, "LC_MESSAGES"), "");
}

TEST(ProgramFolder, IsWhereTheProgramLies) {
  EXPECT_TRUE(std::filesystem::equivalent(programFolder(),
                                          std::filesystem::canonical("/proc/self/exe").parent_path()));
  EXPECT_TRUE(programFolder().starts_with('/'));
}

}  // namespace
}  // namespace lumivane
