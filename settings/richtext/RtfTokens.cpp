#include "settings/richtext/RtfTokens.h"

#include <algorithm>
#include <limits>

namespace lumivane {
namespace {

constexpr std::size_t kMostLetters = 32;

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

RtfToken plain(RtfToken::Kind kind, char byte = 0) {
  return {kind, {}, std::nullopt, static_cast<unsigned char>(byte)};
}

}  // namespace

int hexDigit(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

Result<RtfToken> RtfTokens::next() {
  while (!ended()) {
    const char c = bytes_[at_++];
    switch (c) {
      case '{':
        return plain(RtfToken::Kind::GroupBegins);
      case '}':
        return plain(RtfToken::Kind::GroupEnds);
      case '\\':
        return control();
      case '\r':
      case '\n':
      case '\0':
        break;
      default:
        return plain(RtfToken::Kind::Byte, c);
    }
  }
  return plain(RtfToken::Kind::End);
}

Result<RtfToken> RtfTokens::control() {
  if (ended()) return Error{"it ends in a backslash"};
  if (!isLetter(bytes_[at_])) {
    const char symbol = bytes_[at_++];
    return symbol == '\'' ? hexadecimal() : plain(RtfToken::Kind::Symbol, symbol);
  }
  const std::size_t begin = at_;
  while (!ended() && isLetter(bytes_[at_])) ++at_;
  RtfToken token{RtfToken::Kind::Word, bytes_.substr(begin, at_ - begin), std::nullopt, 0};
  if (token.word.size() > kMostLetters) return Error{"a control word is too long"};
  token.parameter = number();
  if (!ended() && bytes_[at_] == ' ') ++at_;
  if (token.word != "bin") return token;
  const auto skipped = static_cast<std::size_t>(std::max(token.parameter.value_or(0), 0));
  if (skipped > bytes_.size() - at_) return Error{"binary data reach beyond its end"};
  at_ += skipped;
  return token;
}

Result<RtfToken> RtfTokens::hexadecimal() {
  if (bytes_.size() - at_ < 2) return Error{"a character's number is cut off"};
  const int high = hexDigit(bytes_[at_]);
  const int low = hexDigit(bytes_[at_ + 1]);
  if (high < 0 || low < 0) return Error{"a character's number is not hexadecimal"};
  at_ += 2;
  return plain(RtfToken::Kind::Byte, static_cast<char>(high * 16 + low));
}

std::optional<std::int32_t> RtfTokens::number() {
  const bool negative = !ended() && bytes_[at_] == '-' && at_ + 1 < bytes_.size() && isDigit(bytes_[at_ + 1]);
  if (negative) ++at_;
  if (ended() || !isDigit(bytes_[at_])) return std::nullopt;
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (; !ended() && isDigit(bytes_[at_]); ++at_) value = std::min(kMost, value * 10 + (bytes_[at_] - '0'));
  return static_cast<std::int32_t>(negative ? -value : value);
}

}  // namespace lumivane
