// Takes a command line apart into options and operands.
//
// Threads: any; pure functions.
// Errors:  an unknown option, one without its value, or one with a value it does not take is an Error.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Result.h"

namespace lumivane {

// One long option, named with its two dashes.
struct OptionRule {
  std::string_view name;
  bool takesValue = false;
};

struct Arguments {
  std::map<std::string, std::string, std::less<>>
      options;  // by name; of an option given twice the last counts
  std::vector<std::string> operands;

  [[nodiscard]] bool has(std::string_view option) const { return options.contains(option); }
  // nullptr when the option was not given.
  [[nodiscard]] const std::string* valueOf(std::string_view option) const;
};

// "--name value" and "--name=value" are the same; "--" ends the options. "-h" stands for "--help", which every
// command line may have. What begins with a dash and a digit is a number, and a lone dash an operand.
[[nodiscard]] Result<Arguments> parseArguments(const std::vector<std::string>& words,
                                               const std::vector<OptionRule>& rules);

}  // namespace lumivane
