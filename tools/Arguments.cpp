#include "tools/Arguments.h"

#include <algorithm>
#include <cctype>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr std::string_view kHelp = "--help";

bool looksLikeOption(std::string_view word) {
  const bool number =
      word.size() > 1 && (std::isdigit(static_cast<unsigned char>(word[1])) != 0 || word[1] == '.');
  return word.size() > 1 && word[0] == '-' && !number;
}

const OptionRule* findRule(const std::vector<OptionRule>& rules, std::string_view name) {
  const auto found = std::ranges::find(rules, name, &OptionRule::name);
  return found == rules.end() ? nullptr : &*found;
}

// Reads one option after the other.
class Parser {
 public:
  Parser(const std::vector<std::string>& words, const std::vector<OptionRule>& rules)
      : words_(words), rules_(rules) {}

  Result<Arguments> run() {
    while (next_ < words_.size()) {
      const std::string& word = words_[next_++];
      if (word == "--") break;
      if (!looksLikeOption(word)) {
        arguments_.operands.push_back(word);
      } else if (const std::string problem = takeOption(word); !problem.empty()) {
        return Error{problem};
      }
    }
    arguments_.operands.insert(arguments_.operands.end(), words_.begin() + static_cast<std::ptrdiff_t>(next_),
                               words_.end());
    return std::move(arguments_);
  }

 private:
  // Empty, or what is wrong.
  std::string takeOption(const std::string& word) {
    const std::size_t equals = word.find('=');
    const std::string name = word == "-h" ? std::string(kHelp) : word.substr(0, equals);
    const bool hasValue = equals != std::string::npos;
    const OptionRule* rule = findRule(rules_, name);
    if (rule == nullptr && name != kHelp) return "unknown option " + printable(name);
    const bool takesValue = rule != nullptr && rule->takesValue;
    if (!takesValue && hasValue) return "option " + name + " takes no value";
    if (takesValue && !hasValue && next_ == words_.size()) return "option " + name + " needs a value";
    std::string value;
    if (hasValue) value = word.substr(equals + 1);
    if (takesValue && !hasValue) value = words_[next_++];
    arguments_.options.insert_or_assign(name, std::move(value));
    return {};
  }

  const std::vector<std::string>& words_;
  const std::vector<OptionRule>& rules_;
  std::size_t next_ = 0;
  Arguments arguments_;
};

}  // namespace

const std::string* Arguments::valueOf(std::string_view option) const {
  const auto found = options.find(option);
  return found == options.end() ? nullptr : &found->second;
}

Result<Arguments> parseArguments(const std::vector<std::string>& words,
                                 const std::vector<OptionRule>& rules) {
  return Parser(words, rules).run();
}

}  // namespace lumivane
