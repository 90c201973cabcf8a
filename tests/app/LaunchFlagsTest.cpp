#include "app/LaunchFlags.h"

namespace lumivane {
namespace {

TEST(LaunchFlags, startInAWindowByDefault) {
  const LaunchFlags flags;
  EXPECT_FALSE(flags.fullScreen);
  EXPECT_FALSE(flags.surrogate);
}

TEST(LaunchFlags, addUp) {
  LaunchFlags flags;
  EXPECT_TRUE(flags.add("-s"));
  EXPECT_TRUE(flags.add("-f"));
  EXPECT_TRUE(flags.fullScreen);
  EXPECT_TRUE(flags.surrogate);
}

TEST(LaunchFlags, otherWordsChangeNothing) {
  LaunchFlags flags;
  for (const char* word : {"/usr/bin/LumivaneApp", "-f\n", "", "-fs", "-F"})
    EXPECT_FALSE(flags.add(word)) << word;
  EXPECT_FALSE(flags.fullScreen);
  EXPECT_FALSE(flags.surrogate);
}

}  // namespace
}  // namespace lumivane
