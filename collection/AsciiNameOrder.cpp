#include "collection/AsciiNameOrder.h"

#include <unicode/uset.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <string>

namespace lumivane {
namespace {

constexpr int kFirst = ' ';
constexpr int kLast = '~';

// Between a key's characters and its capital letters: below every rank, so that a name comes before a longer one.
constexpr std::uint8_t kEndOfCharacters = 1;
constexpr std::uint8_t kLowestRank = 2;
// ICU takes longer numbers apart.
constexpr std::ptrdiff_t kMostDigits = 254;

bool hasSetting(const UCollator& collator, UColAttribute attribute, UColAttributeValue value) {
  UErrorCode status = U_ZERO_ERROR;
  return ucol_getAttribute(&collator, attribute, &status) == value && U_SUCCESS(status);
}

// What changes the order of plain characters without a word about any of them.
bool hasPlainSettings(const UCollator& collator) {
  return hasSetting(collator, UCOL_NUMERIC_COLLATION, UCOL_ON) &&
         hasSetting(collator, UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE) &&
         hasSetting(collator, UCOL_CASE_FIRST, UCOL_OFF) && hasSetting(collator, UCOL_CASE_LEVEL, UCOL_OFF) &&
         hasSetting(collator, UCOL_STRENGTH, UCOL_TERTIARY);
}

// Whether the language says something of its own about a plain character or a sequence of them.
bool tailorsAscii(const UCollator& collator) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<USet, decltype(&uset_close)> tailored(ucol_getTailoredSet(&collator, &status),
                                                              &uset_close);
  if (U_FAILURE(status)) return true;
  for (std::int32_t i = 0; i < uset_getItemCount(tailored.get()); ++i) {
    UChar32 first = 0;
    UChar32 last = 0;
    std::array<UChar, 32> text{};
    status = U_ZERO_ERROR;
    const std::int32_t length =
        uset_getItem(tailored.get(), i, &first, &last, text.data(), text.size(), &status);
    if (U_FAILURE(status)) return true;
    const bool plainCharacter = length == 0 && first <= kLast;
    const bool plainSequence =
        length > 0 && std::all_of(text.begin(), text.begin() + length, [](UChar c) { return c <= kLast; });
    if (plainCharacter || plainSequence) return true;
  }
  return false;
}

// ICU's key of one character, and the part of it in which case does not count.
struct CharacterKey {
  char character = 0;
  std::string whole;
  std::string base;
};

CharacterKey keyOf(const UCollator& collator, char character) {
  const auto text = static_cast<UChar>(character);
  std::array<std::uint8_t, 64> key{};
  const std::int32_t bytes = ucol_getSortKey(&collator, &text, 1, key.data(), key.size());
  CharacterKey result{character, {}, {}};
  if (bytes <= 0 || bytes > static_cast<std::int32_t>(key.size())) return result;
  result.whole.assign(key.begin(), key.begin() + bytes);
  result.base = result.whole.substr(0, result.whole.find('\1'));  // ends the first level
  return result;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isLetterPair(char lower, char upper) {
  return lower >= 'a' && lower <= 'z' && upper == lower - 'a' + 'A';
}

}  // namespace

std::optional<AsciiNameOrder> AsciiNameOrder::of(const UCollator& collator) {
  if (!hasPlainSettings(collator) || tailorsAscii(collator)) return std::nullopt;
  std::vector<CharacterKey> keys;
  for (int c = kFirst; c <= kLast; ++c) keys.push_back(keyOf(collator, static_cast<char>(c)));
  std::sort(keys.begin(), keys.end(), [](const auto& a, const auto& b) { return a.whole < b.whole; });
  AsciiNameOrder order;
  std::uint8_t rank = kLowestRank;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (keys[i].base.empty()) return std::nullopt;
    const char own = keys[i].character;
    const char before = i == 0 ? '\0' : keys[i - 1].character;
    const bool isUpper = isLetterPair(before, own);
    const bool sameBase = i > 0 && keys[i].base == keys[i - 1].base;
    if (isUpper != sameBase || (isDigit(own) && own != '0' && before != own - 1)) return std::nullopt;
    const bool sameRank = isUpper || (isDigit(own) && own != '0');
    if (i > 0 && !sameRank) ++rank;
    order.characters_[static_cast<std::uint8_t>(own)] = {rank, isUpper, isDigit(own)};
  }
  return order;
}

bool AsciiNameOrder::appendKey(std::string_view name, std::vector<std::uint8_t>& keys) const {
  const std::size_t begin = keys.size();
  // A byte for each character, two more for each number, of which there are at most half as many; then the capitals,
  // eight to a byte.
  keys.resize(begin + name.size() * 2 + name.size() / 8 + 4);
  std::uint8_t* out = keys.data() + begin;
  bool hasCapitals = false;
  for (auto at = name.begin(); at != name.end();) {
    const Character& character = characters_[static_cast<std::uint8_t>(*at)];
    if (character.rank == 0) return false;
    *out++ = character.rank;
    if (!character.isDigit) {
      hasCapitals |= character.isUpper;
      ++at;
      continue;
    }
    const auto isPlainDigit = [](char c) { return isDigit(c); };
    const auto end = std::find_if_not(at, name.end(), isPlainDigit);
    const auto digits = std::find_if(at, end, [](char c) { return c != '0'; });
    if (end - digits > kMostDigits) return false;
    *out++ = static_cast<std::uint8_t>(end - digits + 1);
    out = std::copy(digits, end, out);
    at = end;
  }
  *out++ = kEndOfCharacters;
  if (hasCapitals) {
    unsigned bits = 1;
    for (const char c : name) {
      const Character& character = characters_[static_cast<std::uint8_t>(c)];
      if (character.isDigit) continue;
      bits = bits << 1 | (character.isUpper ? 1U : 0U);
      if (bits < 0x100) continue;
      *out++ = static_cast<std::uint8_t>(bits);
      bits = 1;
    }
    while (bits < 0x100) bits <<= 1;
    *out++ = static_cast<std::uint8_t>(bits);
    while (out[-1] == 0) --out;  // no capitals at the end are as good as none written down
  }
  keys.resize(static_cast<std::size_t>(out - keys.data()));
  return true;
}

}  // namespace lumivane
