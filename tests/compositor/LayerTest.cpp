#include "compositor/model/Layer.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

BasicAnimation fade(double seconds, std::vector<bool>* told = nullptr) {
  BasicAnimation animation;
  animation.from = 1.0;
  animation.to = 0.0;
  animation.duration = Seconds{seconds};
  if (told != nullptr) animation.didStop = [told](bool finished) { told->push_back(finished); };
  return animation;
}

TEST(Layer, hasTheUsualStartValues) {
  const Layer layer;
  EXPECT_EQ(layer.properties().anchorPoint, (PointPt{0.5, 0.5}));
  EXPECT_EQ(layer.properties().opacity, 1);
  EXPECT_EQ(layer.properties().speed, 1);
  EXPECT_EQ(layer.properties().contentsGravity, ContentsGravity::Resize);
  EXPECT_EQ(layer.superlayer(), nullptr);
}

TEST(Layer, addsRemovesAndReplacesSublayers) {
  Layer root;
  Layer* first = root.addSublayer(std::make_unique<Layer>());
  Layer* second = root.addSublayer(std::make_unique<Layer>());
  EXPECT_EQ(first->superlayer(), &root);

  auto replacement = std::make_unique<Layer>();
  Layer* third = replacement.get();
  const auto old = root.replaceSublayer(first, std::move(replacement));
  EXPECT_EQ(old.get(), first);
  EXPECT_EQ(old->superlayer(), nullptr);
  ASSERT_EQ(root.sublayers().size(), 2U);
  EXPECT_EQ(root.sublayers()[0].get(), third);
  EXPECT_EQ(third->superlayer(), &root);

  const auto removed = root.removeSublayer(second);
  EXPECT_EQ(removed.get(), second);
  EXPECT_EQ(removed->superlayer(), nullptr);
  EXPECT_EQ(root.removeSublayer(second), nullptr);
  EXPECT_EQ(root.removeSublayer(nullptr), nullptr);
}

TEST(Layer, replacingAStrangerAdds) {
  Layer root;
  const Layer stranger;
  EXPECT_EQ(root.replaceSublayer(&stranger, std::make_unique<Layer>()), nullptr);
  EXPECT_EQ(root.sublayers().size(), 1U);
}

TEST(Layer, addsBelowASublayerOrElseInFront) {
  Layer root;
  Layer* text = root.addSublayer(std::make_unique<Layer>());
  Layer* below = root.addSublayerBelow(std::make_unique<Layer>(), text);
  Layer* front = root.addSublayerBelow(std::make_unique<Layer>(), nullptr);
  ASSERT_EQ(root.sublayers().size(), 3U);
  EXPECT_EQ(root.sublayers()[0].get(), below);
  EXPECT_EQ(root.sublayers()[1].get(), text);
  EXPECT_EQ(root.sublayers()[2].get(), front);
  EXPECT_EQ(below->superlayer(), &root);
}

TEST(Layer, countsTheChangesOfTheWholeTree) {
  Layer root;
  Layer* child = root.addSublayer(std::make_unique<Layer>());
  Layer* grandchild = child->addSublayer(std::make_unique<Layer>());
  auto last = root.treeRevision();
  const auto changed = [&] {
    const auto before = std::exchange(last, root.treeRevision());
    return before != last;
  };
  EXPECT_FALSE(changed());
  grandchild->edit([](LayerProperties& p) { p.hidden = true; });
  EXPECT_TRUE(changed());
  EXPECT_EQ(grandchild->treeRevision(), root.treeRevision());
  grandchild->addAnimation(fade(1), "fade", Seconds{0});
  EXPECT_TRUE(changed());
  grandchild->removeAnimation("none");
  EXPECT_FALSE(changed());
  grandchild->removeAnimation("fade");
  EXPECT_TRUE(changed());
  const auto removed = child->removeSublayer(grandchild);
  EXPECT_TRUE(changed());
  removed->edit([](LayerProperties& p) { p.hidden = false; });
  EXPECT_FALSE(changed());
}

TEST(Layer, animationsBeginAtTheMomentOfAddingInLocalTime) {
  Layer root;
  Layer* child = root.addSublayer(std::make_unique<Layer>());
  child->edit([](LayerProperties& p) { p.beginTime = Seconds{40}; });
  child->addAnimation(fade(1), "fade", Seconds{100});
  EXPECT_EQ(child->animation("fade")->beginTime, Seconds{60});
  BasicAnimation later = fade(1);
  later.beginTime = Seconds{75};
  child->addAnimation(later, "later", Seconds{100});
  EXPECT_EQ(child->animation("later")->beginTime, Seconds{75});
  EXPECT_EQ(child->animation("none"), nullptr);
}

TEST(Layer, convertsTimeThroughAllLayersAbove) {
  Layer root;
  root.edit([](LayerProperties& p) { p.beginTime = Seconds{10}; });
  Layer* child = root.addSublayer(std::make_unique<Layer>());
  child->edit([](LayerProperties& p) {
    p.speed = 0.5;
    p.timeOffset = Seconds{3};
  });
  EXPECT_EQ(child->convertTime(Seconds{30}), Seconds{13});
}

// The sums by which the engine freezes and thaws a picture.
TEST(Layer, pauseAndResumeKeepTheLocalTime) {
  Layer layer;
  const Seconds paused = layer.convertTime(Seconds{50});
  layer.edit([&](LayerProperties& p) {
    p.speed = 0;
    p.timeOffset = paused;
  });
  EXPECT_EQ(layer.convertTime(Seconds{50}), Seconds{50});
  EXPECT_EQ(layer.convertTime(Seconds{80}), Seconds{50});
  const Seconds offset = layer.properties().timeOffset;
  layer.edit([](LayerProperties& p) {
    p.speed = 1;
    p.timeOffset = Seconds{0};
    p.beginTime = Seconds{0};
  });
  const Seconds begin = layer.convertTime(Seconds{80}) - offset;
  layer.edit([&](LayerProperties& p) { p.beginTime = begin; });
  EXPECT_EQ(layer.convertTime(Seconds{80}), Seconds{50});
  EXPECT_EQ(layer.convertTime(Seconds{81}), Seconds{51});
}

TEST(Layer, tellsTheEndOfAnAnimationOnce) {
  std::vector<bool> told;
  Layer layer;
  layer.addAnimation(fade(2, &told), "fade", Seconds{10});
  layer.finishAnimations(Seconds{11.9});
  EXPECT_TRUE(told.empty());
  layer.finishAnimations(Seconds{12});
  EXPECT_EQ(told, std::vector{true});
  EXPECT_EQ(layer.animation("fade"), nullptr);
  layer.finishAnimations(Seconds{13});
  EXPECT_EQ(told, std::vector{true});
}

TEST(Layer, keepsAnAnimationThatIsNotRemovedOnCompletion) {
  std::vector<bool> told;
  Layer layer;
  BasicAnimation animation = fade(2, &told);
  animation.removedOnCompletion = false;
  layer.addAnimation(animation, "fade", Seconds{10});
  const auto revision = layer.treeRevision();
  layer.finishAnimations(Seconds{12});
  layer.finishAnimations(Seconds{13});
  EXPECT_EQ(told, std::vector{true});
  EXPECT_NE(layer.animation("fade"), nullptr);
  EXPECT_EQ(layer.treeRevision(), revision);
  EXPECT_EQ(layer.nextAnimationEnd(Seconds{13}), std::nullopt);
  layer.removeAnimation("fade");
  EXPECT_EQ(told, std::vector{true});
}

TEST(Layer, anAnimationTakenOffBeforeItsEndIsToldSo) {
  std::vector<bool> told;
  Layer layer;
  layer.addAnimation(fade(2, &told), "fade", Seconds{10});
  layer.addAnimation(fade(3, &told), "fade", Seconds{11});
  EXPECT_EQ(told, std::vector{false});
  EXPECT_EQ(layer.animations().size(), 1U);
  layer.removeAnimation("fade");
  EXPECT_EQ(told, (std::vector{false, false}));
}

TEST(Layer, theCallMayTakeItsOwnLayerOut) {
  Layer root;
  Layer* child = root.addSublayer(std::make_unique<Layer>());
  Layer* other = root.addSublayer(std::make_unique<Layer>());
  int calls = 0;
  BasicAnimation animation = fade(1);
  animation.didStop = [&](bool) {
    ++calls;
    root.removeSublayer(child).reset();
  };
  child->addAnimation(animation, "a", Seconds{0});
  BasicAnimation another = fade(1);
  another.didStop = [&](bool) { ++calls; };
  other->addAnimation(another, "b", Seconds{0});
  root.finishAnimations(Seconds{5});
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(root.sublayers().size(), 1U);
}

TEST(Layer, theCallMayAddAnAnimation) {
  Layer layer;
  std::vector<bool> told;
  BasicAnimation animation = fade(1);
  animation.didStop = [&](bool) { layer.addAnimation(fade(0, &told), "next", Seconds{5}); };
  layer.addAnimation(animation, "first", Seconds{0});
  layer.finishAnimations(Seconds{5});
  EXPECT_TRUE(told.empty());  // its turn comes with the next look
  EXPECT_EQ(layer.nextAnimationEnd(Seconds{5}), Seconds{5});
  layer.finishAnimations(Seconds{5});
  EXPECT_EQ(told, std::vector{true});
}

TEST(Layer, knowsTheNextEndOfTheTree) {
  std::vector<bool> told;
  Layer root;
  Layer* child = root.addSublayer(std::make_unique<Layer>());
  EXPECT_EQ(root.nextAnimationEnd(Seconds{0}), std::nullopt);
  root.addAnimation(fade(30, &told), "long", Seconds{10});
  child->edit([](LayerProperties& p) {
    p.speed = 0.5;
    p.beginTime = Seconds{4};
  });
  child->addAnimation(fade(2, &told), "short", Seconds{10});
  EXPECT_EQ(root.nextAnimationEnd(Seconds{10}), Seconds{14});
  root.finishAnimations(Seconds{14});
  EXPECT_EQ(told, std::vector{true});
  EXPECT_EQ(root.nextAnimationEnd(Seconds{14}), Seconds{40});
}

TEST(Layer, animationsThatNobodyWaitsForHaveNoEnd) {
  Layer layer;
  BasicAnimation animation = fade(2);
  animation.removedOnCompletion = false;
  layer.addAnimation(animation, "fade", Seconds{0});
  EXPECT_EQ(layer.nextAnimationEnd(Seconds{0}), std::nullopt);
}

TEST(Layer, frozenLayersNeverEnd) {
  std::vector<bool> told;
  Layer root;
  Layer* child = root.addSublayer(std::make_unique<Layer>());
  child->addAnimation(fade(2, &told), "fade", Seconds{10});
  root.edit([](LayerProperties& p) {
    p.speed = 0;
    p.timeOffset = Seconds{11};
  });
  EXPECT_EQ(root.nextAnimationEnd(Seconds{11}), std::nullopt);
  root.finishAnimations(Seconds{1000});
  EXPECT_TRUE(told.empty());
}

// Waits are whole nanoseconds, rounded down: the wait must not end just before the animation does.
TEST(Layer, anEndIsReachedByAWaitOfWholeNanoseconds) {
  std::vector<bool> told;
  Layer layer;
  layer.addAnimation(fade(1.575, &told), "fade", Seconds{1'234'567.891});
  const Seconds end = layer.nextAnimationEnd(Seconds{1'234'567.891}).value();
  layer.finishAnimations(mediaSeconds(MediaTime(wholeNanoseconds(end))));
  EXPECT_EQ(told, std::vector{true});
}

}  // namespace
}  // namespace lumivane
