// A whole evening of slideshow in virtual time, with missing and broken files among the good ones.
#include <set>

#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

constexpr std::size_t kPictures = 300;
constexpr int kChanges = 1000;

struct ViewEveningTest : ViewTest {
  ViewEveningTest() {
    configure([](DisplaySettings& s) {
      s.crossDissolve_ = true;
      s.kenBurnsIsOn_ = true;
      s.durationPerImage_ = 12;
    });
    listPictures(kPictures);
    // Every seventh is missing, every eleventh cut short, some too small, some no picture at all.
    for (std::size_t i = 0; i < kPictures; ++i) {
      FakePicture& picture = decoder.pictures[path(i)];
      if (i % 7 == 3) picture.opens = false;
      if (i % 11 == 5) picture.decodes = false;
      if (i % 31 == 8) picture.properties.pixelWidth = 0;
      if (i % 37 == 9) picture.status = ImageSourceStatus::UnknownType;
    }
  }
  [[nodiscard]] bool good(std::size_t i) const {
    return i % 7 != 3 && i % 11 != 5 && i % 31 != 8 && i % 37 != 9;
  }
  [[nodiscard]] std::size_t goodPictures() const {
    std::size_t count = 0;
    for (std::size_t i = 0; i < kPictures; ++i) count += good(i) ? 1 : 0;
    return count;
  }
  void expectSoundTree() const {
    const auto& layers = view->mainLayer().sublayers();
    ASSERT_LE(layers.size(), 5U) << "current, former, prefetched, text and help at the most";
    const LayerProperties& current = view->currentLayer()->properties();
    if (!current.contents) return;  // an error stands on black
    const BasicAnimation* bounds = view->currentLayer()->animation(kBoundsAnimKey);
    const BasicAnimation* position = view->currentLayer()->animation(kPositionAnimKey);
    ASSERT_TRUE(bounds != nullptr && position != nullptr);
    EXPECT_EQ(bounds->duration, Seconds{12});
    EXPECT_EQ(bounds->repeatCount, 1'000'000);
    EXPECT_TRUE(bounds->autoreverses);
    ASSERT_NE(view->currentLayer()->animation(kFadeInAnimKey), nullptr);
  }
};

TEST_F(ViewEveningTest, showsEveryGoodPictureOncePerPassAndNeverStops) {
  queues.jobTime = std::chrono::milliseconds(700);
  start();
  std::multiset<std::string> shown;
  std::string last;
  std::set<std::string> pass;
  std::size_t passes = 0;
  int changes = 0;
  const Layer* layer = view->currentLayer();
  // Layers are told apart by picture and time rather than by address, which may be used again.
  while (changes < kChanges) {
    const std::size_t restarts = log.count("All images displayed. Starting over.");
    run(Seconds{1});
    if (log.count("All images displayed. Starting over.") != restarts) ++passes;
    expectSoundTree();
    if (HasFatalFailure()) return;
    if (view->filename() == last || view->filename().empty()) continue;
    last = view->filename();
    shown.insert(last);
    ++changes;
    layer = view->currentLayer();
  }
  EXPECT_NE(layer, nullptr);
  EXPECT_GE(passes, 4U) << "1,000 changes are more than four passes over the good pictures";
  for (std::size_t i = 0; i < kPictures; ++i) {
    if (!good(i)) {
      EXPECT_EQ(shown.count(path(i)), 0U) << path(i);
    } else {
      EXPECT_GE(shown.count(path(i)), passes - 1) << path(i);
      EXPECT_LE(shown.count(path(i)), passes + 1) << path(i);
    }
  }
  EXPECT_GT(log.countStartingWith("Image gone: /pictures/"), 0U);
  EXPECT_GT(log.countStartingWith("Image loading failed: /pictures/"), 0U);
  EXPECT_GT(log.countStartingWith("Image smaller than 1 pixels: /pictures/"), 0U);
  EXPECT_GT(log.countStartingWith("Image source status: -3 !"), 0U);
  EXPECT_EQ(files.content.size(), 3U) << "settings, list and record; nothing else is left behind";
}

TEST_F(ViewEveningTest, decodesEachShownPictureOnce) {
  start();
  beat();
  for (int i = 0; i < 100; ++i) runUntilChange();
  int decodes = 0;
  for (const auto& [path_, count] : decoder.decodes)
    decodes += good(std::stoul(path_.substr(11))) ? count : 0;
  const std::size_t shownOrWaiting = view->prefetchSlot().full() ? 1 : 0;
  EXPECT_LE(decodes, 101 + static_cast<int>(shownOrWaiting));
}

TEST_F(ViewEveningTest, keepsNoMoreThanItsHistory) {
  start();
  beat();
  for (int i = 0; i < 50; ++i) runUntilChange();
  std::set<const Bitmap*> kept;
  for (const HistoryEntry& entry : view->history().entries()) {
    if (entry.img) kept.insert(entry.img.get());
  }
  EXPECT_EQ(kept.size(), 12U);
}

}  // namespace
}  // namespace lumivane
