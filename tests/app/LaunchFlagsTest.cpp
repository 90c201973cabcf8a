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
  flags.add("-s");
  flags.add("-f");
  EXPECT_TRUE(flags.fullScreen);
  EXPECT_TRUE(flags.surrogate);
  EXPECT_TRUE(flags.unknown.empty());
}

TEST(LaunchFlags, keepWhatTheyDoNotKnow) {
  LaunchFlags flags;
  flags.add("/usr/bin/LumivaneApp");
  flags.add("-f\n");
  EXPECT_FALSE(flags.fullScreen);
  EXPECT_EQ(flags.unknown, (std::vector<std::string>{"/usr/bin/LumivaneApp", "-f\n"}));
}

}  // namespace
}  // namespace lumivane
