#include "imaging/decode/RowFilters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace lumivane {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes randomBytes(std::mt19937& random, std::size_t count) {
  Bytes bytes(count);
  // Many extremes: sums that go beyond 0 and 255 are where forms could differ.
  for (std::uint8_t& byte : bytes)
    byte = static_cast<std::uint8_t>(random() % 3 == 0 ? random() : random() % 2 * 255);
  return bytes;
}

// With negative ones, of the right sum.
std::vector<std::int16_t> randomWeights(std::mt19937& random, std::size_t count) {
  std::vector<std::int16_t> weights(count);
  int rest = 1 << kWeightBits;
  for (std::int16_t& weight : weights) {
    weight = static_cast<std::int16_t>(static_cast<int>(random() % 4000) - 2000);
    rest -= weight;
  }
  weights[count / 2] = static_cast<std::int16_t>(weights[count / 2] + rest);
  return weights;
}

TEST(RowFilters, all_forms_give_the_same_across) {
  std::mt19937 random(1);
  constexpr std::size_t kPixels = 57;
  constexpr std::size_t kTaps = 12;  // what every form can take
  const Bytes in = randomBytes(random, (kPixels + kTaps) * 4);
  FilterTaps columns{kTaps, {}, {}};
  for (std::size_t x = 0; x < kPixels; ++x) {
    columns.first.push_back(static_cast<std::int32_t>(x));
    const auto weights = randomWeights(random, kTaps);
    columns.weights.insert(columns.weights.end(), weights.begin(), weights.end());
  }
  const auto filtered = [&](const RowFilters& form) {
    Bytes out(kPixels * 4, 77);
    form.across(in.data(), columns, 2, kPixels - 1, out.data());
    return out;
  };
  const auto forms = allRowFilters();
  const Bytes expected = filtered(forms.front());
  EXPECT_EQ(expected[7], 77);
  EXPECT_EQ(expected[kPixels * 4 - 4], 77);
  EXPECT_NE(std::count(expected.begin(), expected.end(), 0), 0);
  for (const RowFilters& form : forms) EXPECT_EQ(filtered(form), expected);
}

TEST(RowFilters, all_forms_give_the_same_down) {
  std::mt19937 random(2);
  for (const std::size_t bytes : {4U, 16U, 20U, 32U, 36U, 52U, 100U, 128U}) {
    for (const std::size_t taps : {2U, 8U, 10U}) {
      std::vector<Bytes> rows;
      for (std::size_t i = 0; i < taps; ++i) rows.push_back(randomBytes(random, (bytes + 15) / 16 * 16));
      std::vector<const std::uint8_t*> pointers;
      for (const Bytes& row : rows) pointers.push_back(row.data());
      const auto weights = randomWeights(random, taps);
      const auto filtered = [&](const RowFilters& form) {
        Bytes out(bytes);  // just as many, so that a sanitizer sees a step beyond
        form.down(pointers.data(), weights.data(), taps, bytes, out.data());
        return out;
      };
      const auto forms = allRowFilters();
      for (const RowFilters& form : forms) EXPECT_EQ(filtered(form), filtered(forms.front()));
    }
  }
}

}  // namespace
}  // namespace lumivane
