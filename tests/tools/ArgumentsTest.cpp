#include "tools/Arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::vector<OptionRule> kRules{{"--display", true}, {"--json", false}};

TEST(Arguments, OptionsAndOperandsMayBeMixed) {
  const Result<Arguments> arguments =
      parseArguments({"a", "--json", "b", "--display", "Color LCD", "c"}, kRules);
  ASSERT_TRUE(arguments);
  EXPECT_THAT(arguments.value().operands, ElementsAre("a", "b", "c"));
  EXPECT_TRUE(arguments.value().has("--json"));
  ASSERT_NE(arguments.value().valueOf("--display"), nullptr);
  EXPECT_EQ(*arguments.value().valueOf("--display"), "Color LCD");
  EXPECT_EQ(arguments.value().valueOf("--other"), nullptr);
}

TEST(Arguments, ValuesMayFollowAnEqualsSign) {
  EXPECT_EQ(*parseArguments({"--display=a=b"}, kRules).value().valueOf("--display"), "a=b");
  EXPECT_EQ(*parseArguments({"--display="}, kRules).value().valueOf("--display"), "");
}

TEST(Arguments, AValueMayLookLikeAnOption) {
  EXPECT_EQ(*parseArguments({"--display", "--json"}, kRules).value().valueOf("--display"), "--json");
}

TEST(Arguments, TheLastOfTwoCounts) {
  EXPECT_EQ(*parseArguments({"--display", "a", "--display=b"}, kRules).value().valueOf("--display"), "b");
}

TEST(Arguments, ADoubleDashEndsTheOptions) {
  EXPECT_THAT(parseArguments({"a", "--", "--json", "-rf.jpg", "--"}, kRules).value().operands,
              ElementsAre("a", "--json", "-rf.jpg", "--"));
}

TEST(Arguments, NumbersAndALoneDashAreOperands) {
  EXPECT_THAT(parseArguments({"-5", "-0.5", "-.5", "-", ""}, kRules).value().operands,
              ElementsAre("-5", "-0.5", "-.5", "-", ""));
}

TEST(Arguments, HelpIsAlwaysUnderstood) {
  EXPECT_TRUE(parseArguments({"--help"}, {}).value().has("--help"));
  EXPECT_TRUE(parseArguments({"-h"}, {}).value().has("--help"));
}

TEST(Arguments, MistakesAreExplained) {
  EXPECT_THAT(parseArguments({"--bogus"}, kRules).error(), HasSubstr("--bogus"));
  EXPECT_THAT(parseArguments({"-x"}, kRules).error(), HasSubstr("-x"));
  EXPECT_THAT(parseArguments({"--display"}, kRules).error(), HasSubstr("needs a value"));
  EXPECT_THAT(parseArguments({"--json=yes"}, kRules).error(), HasSubstr("takes no value"));
  EXPECT_THAT(parseArguments({"--help=yes"}, kRules).error(), HasSubstr("takes no value"));
  EXPECT_EQ(parseArguments({"--\x1B[31m"}, kRules).error(), "unknown option --\\x1B[31m");
}

}  // namespace
}  // namespace lumivane
