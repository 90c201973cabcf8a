#include <algorithm>
#include <array>
#include <string>

#include "platform/PropertyListGuard.h"

namespace lumivane {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

bool isDigits(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool isHexDigits(std::string_view text) {
  constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
  return !text.empty() && text.find_first_not_of(kHexDigits) == std::string_view::npos;
}

bool isInteger(std::string_view text) {
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  constexpr std::size_t kMostDigits = 20;  // of 64 bits
  if (text.starts_with("0x") || text.starts_with("0X"))
    return isHexDigits(text.substr(2)) && text.size() <= 18;
  return isDigits(text) && text.size() <= kMostDigits;
}

bool isReal(std::string_view text) {
  constexpr std::string_view kRealCharacters = "0123456789+-.eE";
  constexpr std::array<std::string_view, 8> kWords{"nan",      "inf",       "+inf",      "-inf",
                                                   "infinity", "+infinity", "-infinity", "NaN"};
  if (std::ranges::find(kWords, text) != kWords.end()) return true;
  return text.find_first_of("0123456789") != std::string_view::npos && text.size() <= 400 &&
         text.find_first_not_of(kRealCharacters) == std::string_view::npos;
}

// YYYY-MM-DDThh:mm:ssZ
bool isDate(std::string_view text) {
  constexpr std::string_view kShape = "0000-00-00T00:00:00Z";
  return std::ranges::equal(
      text, kShape, [](char c, char shape) { return shape == '0' ? (c >= '0' && c <= '9') : c == shape; });
}

// Reads the text from element to element. Everything that the parsing library might take apart otherwise than
// this does (attributes, a DTD with declarations of its own) is refused, so that the two cannot disagree.
class XmlScan {
 public:
  explicit XmlScan(std::string_view text) : text_(text) {}

  Result<Done> run() {
    while (true) {
      const std::size_t open = text_.find('<', at_);
      if (open == std::string_view::npos) break;
      at_ = open + 1;
      const std::string problem = takeMarkup();
      if (!problem.empty()) return Error{problem};
    }
    return Done{};
  }

 private:
  std::string takeMarkup() {
    const std::string_view rest = text_.substr(at_);
    if (rest.starts_with("!--")) return skipPast("-->");
    if (rest.starts_with("![CDATA[")) return skipPast("]]>");
    if (rest.starts_with('?')) return skipPast("?>");
    const std::size_t close = rest.find('>');
    if (close == std::string_view::npos) return "an element is cut short";
    at_ += close + 1;
    const std::string_view tag = rest.substr(0, close);
    if (tag.starts_with('!')) return takeDeclaration(tag);
    return takeElement(tag);
  }

  std::string skipPast(std::string_view end) {
    const std::size_t found = text_.find(end, at_);
    if (found == std::string_view::npos) return "a comment or section has no end";
    at_ = found + end.size();
    return {};
  }

  static std::string takeDeclaration(std::string_view tag) {
    const bool plain = tag.starts_with("!DOCTYPE") && tag.find('[') == std::string_view::npos;
    return plain ? std::string() : "it declares things of its own";
  }

  std::string takeElement(std::string_view tag) {
    if (tag.starts_with('/')) {
      if (isContainer(trimmed(tag.substr(1))) && depth_ > 0) --depth_;
      return {};
    }
    const bool closed = tag.ends_with('/');
    const std::string_view name = trimmed(closed ? tag.substr(0, tag.size() - 1) : tag);
    if (name == "plist" || (name.starts_with("plist version=\"") && name.ends_with('"'))) return {};
    if (isContainer(name)) {
      if (!closed && ++depth_ > kDeepestPropertyListNesting) return "it is nested too deeply";
      return {};
    }
    return checkLeaf(name);
  }

  std::string checkLeaf(std::string_view name) {
    constexpr std::array<std::string_view, 5> kFreeText{"key", "string", "data", "true", "false"};
    if (std::ranges::find(kFreeText, name) != kFreeText.end()) return {};
    const std::string_view content = trimmed(text_.substr(at_, text_.find('<', at_) - at_));
    const bool sound = (name == "integer" && isInteger(content)) || (name == "real" && isReal(content)) ||
                       (name == "date" && isDate(content));
    return sound ? std::string() : "an element is unknown or malformed";
  }

  static bool isContainer(std::string_view name) { return name == "dict" || name == "array"; }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t depth_ = 0;
};

}  // namespace

Result<Done> guardXmlPropertyList(std::string_view bytes) {
  if (bytes.find('\0') != std::string_view::npos) return Error{"it holds zero bytes"};
  return XmlScan(bytes).run();
}

}  // namespace lumivane
