// Replays the inputs that fuzzing has found worth keeping, each a path of its own through a reader of foreign bytes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/fuzz/FuzzTargets.h"

namespace lumivane {
namespace {

class Corpus : public ::testing::TestWithParam<FuzzTarget> {};

TEST_P(Corpus, KeepsAllPromises) {
  const FuzzTarget target = GetParam();
  std::size_t inputs = 0;
  for (const auto& file :
       std::filesystem::directory_iterator(std::filesystem::path(LUMIVANE_CORPUS) / target.name)) {
    SCOPED_TRACE(file.path().string());
    std::ostringstream content;
    content << std::ifstream(file.path(), std::ios::binary).rdbuf();
    target.run(content.str());
    ++inputs;
  }
  EXPECT_GT(inputs, 1U);
  target.run("");
}

std::string nameOf(const ::testing::TestParamInfo<FuzzTarget>& target) {
  return std::string(target.param.name);
}

INSTANTIATE_TEST_SUITE_P(All, Corpus, ::testing::ValuesIn(fuzzTargets().begin(), fuzzTargets().end()),
                         nameOf);

}  // namespace
}  // namespace lumivane
