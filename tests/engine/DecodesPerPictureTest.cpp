// A picture is decoded once to be shown, however it comes and goes, and none that is not shown but the one that waits.
#include <set>

#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

struct DecodesPerPictureTest : ViewTest {
  DecodesPerPictureTest() {
    configure([](DisplaySettings& s) {
      s.kenBurnsIsOn_ = true;
      s.crossDissolve_ = true;
      s.durationPerImage_ = 10;
    });
    listPictures(300);
  }
  // Frame by frame, so that no picture comes and goes unseen.
  void play(Seconds span) {
    const MediaTime end = clock.now() + wholeNanoseconds(span);
    while (clock.now() < end) {
      run(Seconds{0.02});
      note();
    }
  }
  void step(char32_t key) {
    press(key);
    beat();
    note();
    play(Seconds{0.5});
  }
  void resize(SizePt size) {
    window.rectangle.size = size;
    view->setWindowResizingHappened(true);
    view->adjustLayersToNewSize({{0, 0}, size});
    view->viewDidEndLiveResize();
    play(Seconds{0.5});
  }
  void note() {
    if (view->filename().empty() || view->filename() == last) return;
    last = view->filename();
    shown.insert(last);
    ++changes;
  }
  void expectOneDecodeForEachPicture() {
    std::set<std::string> expected = shown;
    const PrefetchSlot& slot = view->prefetchSlot();
    if (slot.full()) expected.emplace(view->imageFiles()[slot.prefetch_img_index_]);
    std::set<std::string> decoded;
    for (const auto& [path_, times] : decoder.decodes) {
      decoded.insert(path_);
      EXPECT_EQ(times, 1) << path_;
    }
    EXPECT_EQ(decoded, expected);
  }

  std::set<std::string> shown;
  std::string last;
  int changes = 0;
};

TEST_F(DecodesPerPictureTest, ofAShowThatIsLeftAlone) {
  start();
  play(Seconds{605});
  EXPECT_GE(changes, 55);
  EXPECT_EQ(shown.size(), static_cast<std::size_t>(changes));
  expectOneDecodeForEachPicture();
}

TEST_F(DecodesPerPictureTest, withACutInsteadOfADissolve) {
  configure([](DisplaySettings& s) { s.durationPerImage_ = 10; });
  start();
  play(Seconds{605});
  EXPECT_GE(changes, 55);
  expectOneDecodeForEachPicture();
}

TEST_F(DecodesPerPictureTest, ofPicturesSteppedBackToAndForth) {
  start();
  play(Seconds{60});
  for (int round = 0; round < 12; ++round) {
    const std::size_t known = shown.size();
    for (int i = 0; i < 4; ++i) step(kLeftArrowCharacter);
    EXPECT_EQ(shown.size(), known) << "from the history";
    for (int i = 0; i < 4; ++i) step(kRightArrowCharacter);
    play(Seconds{12});
  }
  EXPECT_GE(changes, 50);
  expectOneDecodeForEachPicture();
}

TEST_F(DecodesPerPictureTest, ofPicturesThatAreHurriedThrough) {
  start();
  play(Seconds{5});
  for (int i = 0; i < 50; ++i) step(kRightArrowCharacter);
  EXPECT_GE(shown.size(), 50U);
  play(Seconds{5});
  expectOneDecodeForEachPicture();
}

TEST_F(DecodesPerPictureTest, ofPicturesInAWindowThatIsResized) {
  start();
  for (int i = 0; i < 30; ++i) {
    play(Seconds{9 + i * 0.37});  // in dissolves, between them, before the prefetch and after it
    resize({1000.0 + 20 * (i % 7), 800});
  }
  play(Seconds{60});
  EXPECT_GE(shown.size(), 20U);
  expectOneDecodeForEachPicture();
}

TEST_F(DecodesPerPictureTest, ofPicturesThatTakeLong) {
  queues.jobTime = std::chrono::seconds(4);
  start();
  for (int i = 0; i < 40; ++i) {
    play(Seconds{3 + i * 0.61});
    step(i % 3 == 0 ? kLeftArrowCharacter : kRightArrowCharacter);
    if (i % 5 == 0) resize({1000.0 + i, 800});
  }
  play(Seconds{30});
  EXPECT_GE(changes, 50);
  expectOneDecodeForEachPicture();
}

}  // namespace
}  // namespace lumivane
