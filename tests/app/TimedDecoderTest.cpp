#include "app/TimedDecoder.h"

#include "tests/support/FakeDesktop.h"

namespace lumivane {
namespace {

using namespace std::chrono_literals;

// Takes time of a virtual clock to open a picture, and more to decode it.
class SlowDecoder final : public ImageDecoder {
 public:
  explicit SlowDecoder(VirtualClock& clock) : clock_(clock) {}
  FakeImageDecoder pictures;

  [[nodiscard]] std::unique_ptr<ImageSource> open(const std::string& path) override {
    clock_.advance(7ms);
    std::unique_ptr<ImageSource> source = pictures.open(path);
    if (!source) return nullptr;
    return std::make_unique<Source>(clock_, std::move(source));
  }

 private:
  struct Source final : ImageSource {
    Source(VirtualClock& c, std::unique_ptr<ImageSource> s) : clock(c), source(std::move(s)) {}
    [[nodiscard]] ImageSourceStatus status() const override { return source->status(); }
    [[nodiscard]] std::optional<PropertyDictionary> properties() override { return source->properties(); }
    [[nodiscard]] BitmapRef thumbnail(int maxPixelSize) override {
      clock.advance(100ms);
      return source->thumbnail(maxPixelSize);
    }
    VirtualClock& clock;
    std::unique_ptr<ImageSource> source;
  };
  VirtualClock& clock_;
};

class TimedDecoderTest : public testing::Test {
 protected:
  TimedDecoderTest() { slow.pictures.pictures["/a.jpg"] = pictureOf(4000, 3000); }

  VirtualClock clock;
  SlowDecoder slow{clock};
  std::vector<Nanoseconds> told;
  TimedDecoder decoder{slow, clock, [this](Nanoseconds time) { told.push_back(time); }};
};

TEST_F(TimedDecoderTest, HandsOnWhatTheOtherOneSays) {
  const auto source = decoder.open("/a.jpg");
  ASSERT_NE(source, nullptr);
  EXPECT_EQ(source->status(), ImageSourceStatus::Complete);
  EXPECT_EQ(source->properties().value().pixelWidth, 4000);
  EXPECT_NE(source->thumbnail(1234), nullptr);
  EXPECT_EQ(slow.pictures.longestSide, 1234);
  EXPECT_EQ(decoder.open("/gone.jpg"), nullptr);
}

TEST_F(TimedDecoderTest, TellsHowLongItWasWaitedForAPicture) {
  const auto source = decoder.open("/a.jpg");
  clock.advance(1h);  // between the two nobody waits for the decoder
  (void)source->thumbnail(100);
  EXPECT_EQ(told, (std::vector<Nanoseconds>{107ms}));
  (void)source->thumbnail(100);
  EXPECT_EQ(told.back(), 100ms) << "it was open already";
}

TEST_F(TimedDecoderTest, TellsOfDecodesThatFailAndOfNothingThatWasNotDecoded) {
  slow.pictures.pictures["/a.jpg"].decodes = false;
  (void)decoder.open("/gone.jpg");
  (void)decoder.open("/a.jpg")->properties();
  EXPECT_TRUE(told.empty());
  EXPECT_EQ(decoder.open("/a.jpg")->thumbnail(100), nullptr);
  EXPECT_EQ(told, (std::vector<Nanoseconds>{107ms}));
}

}  // namespace
}  // namespace lumivane
