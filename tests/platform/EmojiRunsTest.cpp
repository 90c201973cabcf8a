#include "platform/linux/EmojiRuns.h"

namespace lumivane {
namespace {

using Runs = std::vector<TextRun>;

TEST(EmojiRuns, plainTextHasNone) {
  EXPECT_EQ(emojiRuns(u""), Runs{});
  EXPECT_EQ(emojiRuns(u"The 1st of 3 #tags * © ® ™ — “x” é"), Runs{});
  EXPECT_EQ(emojiRuns(u"東京 서울 עברית हिन्दी 𠮷 𝔘"), Runs{});
}

TEST(EmojiRuns, joinsNeighbours) {
  EXPECT_EQ(emojiRuns(u"a😀b"), (Runs{{1, 2}}));
  EXPECT_EQ(emojiRuns(u"😀🦊 😀"), (Runs{{0, 4}, {5, 2}}));
}

TEST(EmojiRuns, whatIsTextUnlessToldOtherwise) {
  EXPECT_EQ(emojiRuns(u"❤ ☀ ✈"), Runs{});
  EXPECT_EQ(emojiRuns(u"❤\uFE0F ☀\uFE0F"), (Runs{{0, 2}, {3, 2}}));
  EXPECT_EQ(emojiRuns(u"⌚ ⌚\uFE0E"), (Runs{{0, 1}}));
  EXPECT_EQ(emojiRuns(u"1\uFE0F\u20E3 1\u20E3"), (Runs{{0, 3}}));
}

TEST(EmojiRuns, takesSequencesAsAWhole) {
  EXPECT_EQ(emojiRuns(u"x👩\u200D👩\u200D👧\u200D👦x"), (Runs{{1, 11}}));  // a family
  EXPECT_EQ(emojiRuns(u"👍🏽"), (Runs{{0, 4}}));                   // a colour of skin
  EXPECT_EQ(emojiRuns(u"☝🏽"), (Runs{{0, 3}}));
  EXPECT_EQ(emojiRuns(u"🏳\uFE0F\u200D🌈"), (Runs{{0, 6}}));
  EXPECT_EQ(emojiRuns(u"🇩🇪🇯🇵"), (Runs{{0, 8}}));
  EXPECT_EQ(emojiRuns(u"🏴\U000E0067\U000E0062\U000E0065\U000E006E\U000E0067\U000E007F"), (Runs{{0, 14}}));
}

TEST(EmojiRuns, brokenTextDoesNoHarm) {
  const char16_t halves[] = {0xD83D, u' ', 0xDE00, 0xFE0F, 0x200D, 0xD83D};
  EXPECT_EQ(emojiRuns({halves, 6}), Runs{});
  EXPECT_EQ(emojiRuns({halves, 1}), Runs{});
}

}  // namespace
}  // namespace lumivane
