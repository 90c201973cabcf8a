#include "collection/SkipPatterns.h"

#include <unicode/uchar.h>
#include <unicode/uregex.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

// A path on which a pattern takes longer than this (in ICU's steps, each about a millisecond) is not skipped by it.
constexpr std::int32_t kTimeLimit = 25;
// A pattern that took too long on so many paths is given up for good: a walk may meet a million of them.
constexpr int kMostTimeOuts = 100;

constexpr UChar32 kReplacementCharacter = 0xFFFD;

// Converts to UTF-16, what is not UTF-8 to replacement characters. `target` keeps its memory from call to call.
void convertToUtf16(std::string_view utf8, std::u16string& target) {
  target.resize(utf8.size());  // no character has more UTF-16 units than UTF-8 bytes
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(target.data(), static_cast<std::int32_t>(target.size()), &length, utf8.data(),
                       static_cast<std::int32_t>(utf8.size()), kReplacementCharacter, nullptr, &status);
  target.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
}

// Without the white space and line breaks at both ends.
std::u16string trimmed(std::u16string_view text) {
  const auto size = static_cast<std::int32_t>(text.size());
  std::int32_t begin = 0;
  std::int32_t end = size;
  for (std::int32_t next = 0; next < size; begin = next) {
    UChar32 c = 0;
    U16_NEXT(text.data(), next, size, c);
    if (!u_isUWhiteSpace(c)) break;
  }
  for (std::int32_t previous = end; previous > begin; end = previous) {
    UChar32 c = 0;
    U16_PREV(text.data(), begin, previous, c);
    if (!u_isUWhiteSpace(c)) break;
  }
  return std::u16string(text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
}

std::string toUtf8(std::u16string_view text) {
  std::string result(text.size() * 3, '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(result.data(), static_cast<std::int32_t>(result.size()), &length, text.data(),
                     static_cast<std::int32_t>(text.size()), kReplacementCharacter, nullptr, &status);
  result.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
  return result;
}

// What went wrong, for somebody who has never heard of ICU.
std::string reasonFor(UErrorCode status) {
  switch (status) {
    case U_REGEX_MISMATCHED_PAREN:
      return "a round bracket has no counterpart";
    case U_REGEX_MISSING_CLOSE_BRACKET:
      return "a square bracket is not closed";
    case U_REGEX_BAD_ESCAPE_SEQUENCE:
      return "this is nothing that a backslash can be followed by";
    case U_REGEX_BAD_INTERVAL:
      return "numbers are missing between curly brackets";
    case U_REGEX_MAX_LT_MIN:
      return "the second number between curly brackets is the smaller one";
    case U_REGEX_NUMBER_TOO_BIG:
      return "a number is too large";
    case U_REGEX_INVALID_RANGE:
      return "a range between square brackets is backwards or unfinished";
    case U_REGEX_PROPERTY_SYNTAX:
      return "no class of characters has this name";
    case U_REGEX_INVALID_BACK_REF:
      return "it refers to a group that does not exist";
    case U_REGEX_INVALID_FLAG:
      return "there is no such flag";
    case U_REGEX_INVALID_CAPTURE_GROUP_NAME:
      return "a group's name is not valid";
    case U_REGEX_LOOK_BEHIND_LIMIT:
      return "what is looked back at has no limit in length";
    case U_REGEX_PATTERN_TOO_BIG:
    case U_REGEX_STACK_OVERFLOW:
      return "the pattern is too large";
    default:
      return "this is no regular expression";
  }
}

// Requires: a pattern without white space around it.
URegularExpression* openPattern(std::u16string_view pattern, UParseError& place, UErrorCode& status) {
  return uregex_open(pattern.data(), static_cast<std::int32_t>(pattern.size()), 0, &place, &status);
}

}  // namespace

class SkipPatterns::Expression {
 public:
  Expression(URegularExpression* compiled, std::string pattern)
      : compiled_(compiled, &uregex_close), pattern_(std::move(pattern)) {
    UErrorCode status = U_ZERO_ERROR;
    uregex_setTimeLimit(compiled, kTimeLimit, &status);
  }

  [[nodiscard]] bool covers(std::u16string_view path, Log& log) {
    if (timeOuts_ >= kMostTimeOuts) return false;
    UErrorCode status = U_ZERO_ERROR;
    URegularExpression* regex = compiled_.get();
    uregex_setText(regex, path.data(), static_cast<std::int32_t>(path.size()), &status);
    const bool found = uregex_lookingAt(regex, 0, &status) != 0;
    if (status == U_REGEX_TIME_OUT || status == U_REGEX_STACK_OVERFLOW) noteTimeOut(log);
    if (U_FAILURE(status) || !found) return false;
    return uregex_end(regex, 0, &status) == static_cast<std::int32_t>(path.size()) && U_SUCCESS(status);
  }

 private:
  void noteTimeOut(Log& log) {
    ++timeOuts_;
    if (timeOuts_ == 1) log.error("Skip pattern takes too long: " + printable(pattern_) + " !");
  }

  std::unique_ptr<URegularExpression, decltype(&uregex_close)> compiled_;
  std::string pattern_;
  int timeOuts_ = 0;
};

SkipPatterns::SkipPatterns(std::vector<std::string> lines, Log& log) : lines_(std::move(lines)), log_(log) {}
SkipPatterns::SkipPatterns(SkipPatterns&&) noexcept = default;
SkipPatterns::~SkipPatterns() = default;

void SkipPatterns::compile() {
  expressions_.emplace();
  for (const std::string& line : lines_) {
    convertToUtf16(line, path_);
    const std::u16string pattern = trimmed(path_);
    if (pattern.empty()) continue;
    UErrorCode status = U_ZERO_ERROR;
    UParseError place{};
    URegularExpression* compiled = openPattern(pattern, place, status);
    if (U_FAILURE(status)) {
      log_.error("Error in regexp: " + printable(toUtf8(pattern)) + "\n   error message: " +
                 u_errorName(status) + " at character " + std::to_string(place.offset));
      continue;
    }
    expressions_->emplace_back(compiled, toUtf8(pattern));
  }
}

bool SkipPatterns::matchesSkipPattern(std::string_view path) {
  if (!expressions_) compile();
  if (expressions_->empty()) return false;
  convertToUtf16(path, path_);
  for (Expression& expression : *expressions_) {
    if (expression.covers(path_, log_)) return true;
  }
  return false;
}

std::optional<SkipPatternFault> firstSkipPatternFault(std::string_view text) {
  std::u16string utf16;
  convertToUtf16(text, utf16);
  const std::u16string_view rest(utf16);
  std::size_t line = 1;
  for (std::size_t begin = 0; begin <= rest.size(); ++line) {
    const std::size_t end = std::min(rest.find(u'\n', begin), rest.size());
    const std::u16string pattern = trimmed(rest.substr(begin, end - begin));
    begin = end + 1;
    if (pattern.empty()) continue;
    UErrorCode status = U_ZERO_ERROR;
    UParseError place{};
    uregex_close(openPattern(pattern, place, status));  // closing none is allowed
    if (U_SUCCESS(status)) continue;
    return SkipPatternFault{line, static_cast<std::size_t>(std::max(place.offset, std::int32_t{0})),
                            reasonFor(status)};
  }
  return std::nullopt;
}

}  // namespace lumivane
