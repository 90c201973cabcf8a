#include "platform/linux/DisplayNames.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace lumivane {
namespace {

constexpr std::string_view kUnknown = "unknown";

char lower(char c) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

std::string lowered(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), lower);
  return result;
}

// Blanks and control characters at the ends gone, those inside one blank each.
std::string tidied(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool blank = byte <= 0x20 || byte == 0x7F;
    if (!blank) result += c;
    if (blank && !result.empty() && result.back() != ' ') result += ' ';
  }
  if (result.ends_with(' ')) result.pop_back();
  return result;
}

// Compositors and drivers put such words where nothing is known.
bool saysNothing(std::string_view text) {
  const std::string word = lowered(text);
  return word.empty() || word == "none" || word == kUnknown || word == "default" || word == "monitor";
}

// "Dell Inc." is "Dell", "Samsung Electric Company" is "Samsung": from the first such word on, nothing is a name.
std::string withoutCompanySuffix(std::string_view maker) {
  static constexpr std::array<std::string_view, 14> kSuffixes{
      "inc",  "inc.",  "co",          "co.",     "co.,", "ltd",      "ltd.",
      "corp", "corp.", "corporation", "company", "gmbh", "electric", "electronics"};
  const std::string words = lowered(maker);
  for (std::size_t start = words.find(' '); start != std::string::npos; start = words.find(' ', start + 1)) {
    std::string_view word = std::string_view(words).substr(start + 1);
    word = word.substr(0, word.find(' '));
    if (std::ranges::find(kSuffixes, word) == kSuffixes.end()) continue;
    std::string name(maker.substr(0, start));
    if (name.ends_with(',')) name.pop_back();
    return name;
  }
  return std::string(maker);
}

}  // namespace

std::string displayNameFrom(std::string_view maker, std::string_view model, std::string_view connector) {
  const std::string product = tidied(model);
  if (saysNothing(product)) {
    const std::string plug = tidied(connector);
    return plug.empty() ? std::string(kUnknown) : plug;
  }
  const std::string company = withoutCompanySuffix(tidied(maker));
  const std::string firstWord = lowered(company.substr(0, company.find(' ')));
  if (saysNothing(company) || lowered(product).starts_with(firstWord)) return product;
  return company + ' ' + product;
}

}  // namespace lumivane
