#include "settings/TypedValue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::Optional;
using Integer = std::int64_t;
constexpr Integer kLargest = std::numeric_limits<Integer>::max();
constexpr Integer kSmallest = std::numeric_limits<Integer>::min();
constexpr float kLargestFloat = std::numeric_limits<float>::max();

const std::vector<PropertyList> kNotNumbers{PropertyListData{"5"},
                                            PropertyListArray{},
                                            PropertyListDictionary{},
                                            WallTime{},
                                            std::nan(""),
                                            HUGE_VAL,
                                            -HUGE_VAL,
                                            std::string(""),
                                            std::string("five"),
                                            std::string("5 apples"),
                                            std::string("nan"),
                                            std::string("inf"),
                                            std::string("1,5"),
                                            std::string("- 5"),
                                            std::string("+-5")};

TEST(TypedValue, IntegersReadNumbers) {
  EXPECT_EQ(asInteger(Integer{-5}), -5);
  EXPECT_EQ(asInteger(true), 1);
  EXPECT_EQ(asInteger(false), 0);
  EXPECT_EQ(asInteger(kLargest), kLargest);
}

TEST(TypedValue, IntegersCutFractionsOff) {
  EXPECT_EQ(asInteger(2.9), 2);
  EXPECT_EQ(asInteger(-2.9), -2);
  EXPECT_EQ(asInteger(std::string("59.99")), 59);
}

TEST(TypedValue, IntegersSaturate) {
  EXPECT_EQ(asInteger(1e300), kLargest);
  EXPECT_EQ(asInteger(-1e300), kSmallest);
  EXPECT_EQ(asInteger(9223372036854775808.0), kLargest);
  EXPECT_EQ(asInteger(std::string("99999999999999999999999")), kLargest);
}

TEST(TypedValue, IntegersReadText) {
  EXPECT_EQ(asInteger(std::string(" 42\n")), 42);
  EXPECT_EQ(asInteger(std::string("+42")), 42);
  EXPECT_EQ(asInteger(std::string("-42")), -42);
  EXPECT_EQ(asInteger(std::string("9223372036854775807")), kLargest);
}

TEST(TypedValue, FloatsReadNumbers) {
  EXPECT_EQ(asFloat(1.5), 1.5F);
  EXPECT_EQ(asFloat(Integer{3}), 3.0F);
  EXPECT_EQ(asFloat(true), 1.0F);
  EXPECT_EQ(asFloat(std::string("1.3")), 1.3F);
  EXPECT_EQ(asFloat(std::string("1e2")), 100.0F);
  EXPECT_EQ(asFloat(1e300), kLargestFloat);
  EXPECT_EQ(asFloat(-1e300), -kLargestFloat);
}

TEST(TypedValue, BoolsAreTrueExactlyWhenNotZero) {
  EXPECT_EQ(asBool(Integer{2}), true);
  EXPECT_EQ(asBool(Integer{0}), false);
  EXPECT_EQ(asBool(0.25), true);
  EXPECT_EQ(asBool(-0.0), false);
  EXPECT_EQ(asBool(std::string("1")), true);
  EXPECT_EQ(asBool(std::string("0")), false);
}

TEST(TypedValue, WhatIsNoNumberIsAbsent) {
  for (const PropertyList& value : kNotNumbers) {
    EXPECT_EQ(asInteger(value), std::nullopt) << value.value().index();
    EXPECT_EQ(asFloat(value), std::nullopt) << value.value().index();
    EXPECT_EQ(asBool(value), std::nullopt) << value.value().index();
  }
}

TEST(TypedValue, OnlyTextIsText) {
  EXPECT_EQ(asText(std::string("a")), "a");
  EXPECT_EQ(asText(Integer{1}), std::nullopt);
  EXPECT_EQ(asText(PropertyListData{"a"}), std::nullopt);
}

TEST(TypedValue, BlobsAreAnArrayOfData) {
  EXPECT_THAT(asBlobs(PropertyListArray{PropertyListData{"a"}, PropertyListData{}}),
              Optional(ElementsAre("a", "")));
  EXPECT_THAT(asBlobs(PropertyListArray{}), Optional(ElementsAre()));
  EXPECT_EQ(asBlobs(PropertyListArray{PropertyListData{"a"}, std::string("b")}), std::nullopt);
  EXPECT_EQ(asBlobs(PropertyListData{"a"}), std::nullopt);
}

}  // namespace
}  // namespace lumivane
