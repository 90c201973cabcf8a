#include "settings/OutsideLinks.h"

#include <algorithm>

namespace lumivane {
namespace {

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kDigits = "0123456789";
// RFC 3986, 2.2 and 2.3, and the sign of an escaped byte.
constexpr std::string_view kUrlMarks = "-._~:/?#[]@!$&'()*+,;=%";
constexpr std::string_view kSchemeMarks = "+-.";

bool isOneOf(char c, std::string_view characters) {
  return characters.find(c) != std::string_view::npos;
}

bool isScheme(std::string_view text) {
  return !text.empty() && isOneOf(text.front(), kLetters) && std::ranges::all_of(text, [](char c) {
    return isOneOf(c, kLetters) || isOneOf(c, kDigits) || isOneOf(c, kSchemeMarks);
  });
}

bool holdsUrlCharactersOnly(std::string_view text) {
  return std::ranges::all_of(
      text, [](char c) { return isOneOf(c, kLetters) || isOneOf(c, kDigits) || isOneOf(c, kUrlMarks); });
}

}  // namespace

std::optional<std::string> urlOf(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos || colon + 1 == text.size()) return std::nullopt;
  if (!isScheme(text.substr(0, colon)) || !holdsUrlCharactersOnly(text)) return std::nullopt;
  return std::string(text);
}

void openLink(const OutsideLink& link, Workspace& workspace, Log& log) {
  const std::optional<std::string> url = urlOf(link.target);
  if (!url) log.error(link.failure);
  workspace.openUrl(url.value_or(std::string()));
}

}  // namespace lumivane
