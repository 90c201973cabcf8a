#include "compositor/model/LayerSnapshot.h"

#include <gtest/gtest.h>

#include "tests/support/TestBitmaps.h"

namespace lumivane {
namespace {

Layer* addAt(Layer& root, double z, double mark) {
  Layer* layer = root.addSublayer(std::make_unique<Layer>());
  layer->edit([&](LayerProperties& p) {
    p.zPosition = z;
    p.opacity = mark;
  });
  return layer;
}

std::vector<double> marks(const LayerSnapshot& snapshot) {
  std::vector<double> all;
  for (const auto& sublayer : snapshot.sublayers) all.push_back(sublayer->properties.opacity);
  return all;
}

TEST(LayerSnapshot, ordersByZAndThenByAdding) {
  Layer root;
  addAt(root, 0, 0.1);
  addAt(root, 1, 0.2);
  addAt(root, -10, 0.3);
  addAt(root, -1, 0.4);
  addAt(root, 0, 0.5);
  addAt(root, -1, 0.6);
  const auto frame = makeFrameSnapshot(root, {640, 480}, 2);
  EXPECT_EQ(marks(*frame->root), (std::vector{0.3, 0.4, 0.6, 0.1, 0.5, 0.2}));
  EXPECT_EQ(frame->viewport, (SizePt{640, 480}));
  EXPECT_EQ(frame->scale, 2);
}

TEST(LayerSnapshot, doesNotFollowLaterChanges) {
  Layer root;
  Layer* child = addAt(root, 0, 0.5);
  const auto frame = makeFrameSnapshot(root, {640, 480}, 1);
  child->edit([](LayerProperties& p) { p.opacity = 0.9; });
  root.addSublayer(std::make_unique<Layer>());
  EXPECT_EQ(marks(*frame->root), std::vector{0.5});
}

TEST(LayerSnapshot, carriesAnimationsWithoutTheirCalls) {
  Layer root;
  bool told = false;
  BasicAnimation animation;
  animation.keyPath = KeyPath::Position;
  animation.from = PointPt{1, 2};
  animation.to = PointPt{3, 4};
  animation.duration = Seconds{5};
  animation.didStop = [&](bool) { told = true; };
  root.addAnimation(animation, "move", Seconds{7});
  const auto frame = makeFrameSnapshot(root, {}, 1);
  ASSERT_EQ(frame->root->animations.size(), 1U);
  const BasicAnimation& copy = frame->root->animations[0];
  EXPECT_EQ(copy.keyPath, KeyPath::Position);
  EXPECT_EQ(std::get<PointPt>(copy.to), (PointPt{3, 4}));
  EXPECT_EQ(copy.beginTime, Seconds{7});
  EXPECT_FALSE(copy.didStop);
}

TEST(LayerSnapshot, sharesTheContents) {
  Layer root;
  const BitmapRef bitmap = makeBitmap({2, 2});
  root.edit([&](LayerProperties& p) { p.contents = bitmap; });
  EXPECT_EQ(makeFrameSnapshot(root, {}, 1)->root->properties.contents, bitmap);
}

}  // namespace
}  // namespace lumivane
