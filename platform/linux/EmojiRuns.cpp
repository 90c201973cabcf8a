#include "platform/linux/EmojiRuns.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <memory>

namespace lumivane {
namespace {

constexpr char16_t kAsText = 0xFE0E;

UChar32 firstOf(std::u16string_view text) {
  const UChar32 lead = text[0];
  return text.size() > 1 && U16_IS_LEAD(text[0]) && U16_IS_TRAIL(text[1])
             ? U16_GET_SUPPLEMENTARY(text[0], text[1])
             : lead;
}

bool hasModifier(std::u16string_view character) {
  for (std::size_t i = 0; i < character.size(); ++i) {
    if (u_hasBinaryProperty(firstOf(character.substr(i)), UCHAR_EMOJI_MODIFIER)) return true;
  }
  return false;
}

bool isEmoji(std::u16string_view character) {
  const UChar32 first = firstOf(character);
  if (!u_hasBinaryProperty(first, UCHAR_EMOJI)) return false;
  if (character.find(kAsEmoji) != std::u16string_view::npos) return true;
  if (character.find(kAsText) != std::u16string_view::npos) return false;
  return u_hasBinaryProperty(first, UCHAR_EMOJI_PRESENTATION) || hasModifier(character);
}

// Most texts have none, and the search by characters takes long.
bool mayHaveEmoji(std::u16string_view text) {
  return std::ranges::any_of(text, [](char16_t unit) {
    return unit == kAsEmoji || U16_IS_SURROGATE(unit) ||
           (unit >= 0x2000 && u_hasBinaryProperty(unit, UCHAR_EMOJI_PRESENTATION));
  });
}

}  // namespace

std::vector<TextRun> emojiRuns(std::u16string_view text) {
  std::vector<TextRun> runs;
  if (!mayHaveEmoji(text)) return runs;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> characters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  if (U_FAILURE(status)) return runs;
  const icu::UnicodeString searched(false, text.data(), static_cast<std::int32_t>(text.size()));
  characters->setText(searched);
  for (auto start = characters->first(), end = characters->next(); end != icu::BreakIterator::DONE;
       start = end, end = characters->next()) {
    const TextRun run{static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)};
    if (!isEmoji(text.substr(run.start, run.length))) continue;
    if (!runs.empty() && runs.back().start + runs.back().length == run.start) {
      runs.back().length += run.length;
    } else {
      runs.push_back(run);
    }
  }
  return runs;
}

}  // namespace lumivane
