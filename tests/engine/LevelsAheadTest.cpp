// What the view has taken up of a picture before it is shown is what can be seen of it then: no level comes late, and none
// is sent in vain.
#include <random>

#include "compositor/model/LayerSnapshot.h"
#include "compositor/model/TexturesWanted.h"
#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

// A tenth of a full-HD screen, and pictures of a tenth of what cameras take, so that they cost little.
constexpr SizePt kScreen{192, 108};
constexpr std::size_t kPictures = 120;

struct LevelsAheadTest : ViewTest {
  LevelsAheadTest() {
    window.rectangle.size = kScreen;
    listPictures(kPictures);
    std::mt19937 sizes(3);
    for (std::size_t i = 0; i < kPictures; ++i) {
      FakePicture& picture = decoder.pictures[path(i)];
      picture.pixels = {100 + static_cast<int>(sizes() % 500), 100 + static_cast<int>(sizes() % 500)};
      picture.properties.pixelWidth = picture.pixels.width;
      picture.properties.pixelHeight = picture.pixels.height;
    }
  }
  [[nodiscard]] std::optional<std::size_t> levelOf(const BitmapRef& picture) const {
    std::vector<WantedTexture> wanted;
    texturesWanted(*makeFrameSnapshot(view->mainLayer(), kScreen, 1), now(), wanted);
    const auto found = std::ranges::find(wanted, picture, &WantedTexture::bitmap);
    if (found == wanted.end()) return std::nullopt;
    return found->mostDetailedLevel;
  }
  // How many pictures of the whole list were taken up with more than could be seen of them; none with less.
  [[nodiscard]] int picturesWithTooMuch(const Change& change) {
    configure([&](DisplaySettings& s) {
      s.durationPerImage_ = 10;
      s.dontRandomize_ = true;
      change(s);
    });
    start();
    int tooMuch = 0;
    for (std::size_t i = 0; i < kPictures; ++i) {
      runUntilChange();
      run(Seconds{5});
      EXPECT_TRUE(view->prefetchSlot().full());
      const BitmapRef next = view->prefetchSlot().prefetched_image_;
      const auto ahead = levelOf(next);
      runUntilChange();
      EXPECT_EQ(view->currentLayer()->properties().contents, next);
      const auto needed = levelOf(next);
      if (!ahead || !needed) {
        ADD_FAILURE() << "not taken up";
        continue;
      }
      EXPECT_LE(*ahead, *needed) << next->displaySize().width << " x " << next->displaySize().height;
      tooMuch += *ahead < *needed ? 1 : 0;
    }
    return tooMuch;
  }
};

TEST_F(LevelsAheadTest, ofAStillPicture) {
  EXPECT_EQ(picturesWithTooMuch([](DisplaySettings& s) { s.allowBlackBorders_ = true; }), 0);
}

TEST_F(LevelsAheadTest, ofAStillPictureThatFillsTheScreen) {
  EXPECT_EQ(picturesWithTooMuch([](DisplaySettings& s) { s.allowBlackBorders_ = false; }), 0);
}

TEST_F(LevelsAheadTest, ofAZoom) {
  EXPECT_EQ(picturesWithTooMuch([](DisplaySettings& s) {
              s.zoomIsOn_ = true;
              s.initZoomInFactor_ = 1.3F;
            }),
            0);
}

// Which pan comes is drawn when it begins: some do not look as closely as they could.
TEST_F(LevelsAheadTest, ofAPan) {
  EXPECT_LE(picturesWithTooMuch([](DisplaySettings& s) {
              s.kenBurnsIsOn_ = true;
              s.crossDissolve_ = true;
            }),
            static_cast<int>(kPictures / 8));
}

}  // namespace
}  // namespace lumivane
