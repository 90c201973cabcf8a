// One layer of the retained tree: a rectangle with contents, a place, and the animations that move it.
//
// Threads: main only. The render thread sees snapshots (LayerSnapshot.h).
// Owns:    its sublayers and animations; shares its immutable contents. Animations that go away together with
//          their layer are not told.
// Units:   points in the superlayer's coordinates, origin lower left, y up; seconds.
// Errors:  none.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "compositor/model/BasicAnimation.h"
#include "compositor/model/Bitmap.h"
#include "platform/Geometry.h"

namespace lumivane {

enum class ContentsGravity {
  Resize,
  ResizeAspect,
  ResizeAspectFill,
  LowerLeft,  // neither scaled nor blurred: one pixel on one of the screen, from the lower left corner of the bounds
};
enum class ContentsFilter { Linear, Trilinear };

struct LayerShadow {
  Color color{0, 0, 0, 1};
  double opacity = 0;  // 0 = no shadow
  double radius = 3;   // points; the standard deviation of the blur
  PointPt offset{0, 0};
  std::optional<RectPt> path;  // the rectangle that casts it, in the layer's own coordinates; absent: none
};

// Everything about a layer but its place in the tree and its animations. Plain values, copied into snapshots.
struct LayerProperties {
  RectPt bounds;
  PointPt position;               // of the anchor point, in the superlayer
  PointPt anchorPoint{0.5, 0.5};  // in unit coordinates of the bounds
  double zPosition = 0;
  double opacity = 1;
  bool hidden = false;
  BitmapRef contents;
  ContentsGravity contentsGravity = ContentsGravity::Resize;
  ContentsFilter minificationFilter = ContentsFilter::Linear;
  ContentsFilter magnificationFilter = ContentsFilter::Linear;
  Color backgroundColor{0, 0, 0, 0};
  LayerShadow shadow;
  // Timing: local time = (superlayer's time - beginTime) * speed + timeOffset.
  double speed = 1;
  Seconds timeOffset{0};
  Seconds beginTime{0};
};

class Layer {
 public:
  Layer() = default;
  Layer(const Layer&) = delete;
  Layer& operator=(const Layer&) = delete;
  ~Layer();

  [[nodiscard]] const LayerProperties& properties() const { return properties_; }
  // Changes properties through the given function and marks the tree as changed:
  // layer.edit([](LayerProperties& p) { p.hidden = true; }).
  template <typename Change>
  void edit(Change change) {
    change(properties_);
    markChanged();
  }

  // Adds the layer in front of those with the same z position, and returns it for later use.
  Layer* addSublayer(std::unique_ptr<Layer> layer);
  // Adds the layer just behind a sublayer, so that of equal z positions the sublayer stays in front; as
  // addSublayer() when that is none of ours.
  Layer* addSublayerBelow(std::unique_ptr<Layer> layer, const Layer* sibling);
  // Takes the layer out of this one and hands it back; nullptr when it is not a sublayer.
  std::unique_ptr<Layer> removeSublayer(const Layer* layer);
  // Puts `replacement` where `old` was and hands `old` back; when `old` is not a sublayer, adds it.
  std::unique_ptr<Layer> replaceSublayer(const Layer* old, std::unique_ptr<Layer> replacement);
  [[nodiscard]] const std::vector<std::unique_ptr<Layer>>& sublayers() const { return sublayers_; }
  [[nodiscard]] Layer* superlayer() const { return superlayer_; }

  // Attaches an animation under a key, replacing the one that has it. Its values must be of the kind that its key
  // path asks for. Without a begin time of its own it begins
  // at media time `now`, converted to local time.
  void addAnimation(BasicAnimation animation, const std::string& key, Seconds now);
  void removeAnimation(const std::string& key);
  [[nodiscard]] const BasicAnimation* animation(const std::string& key) const;
  struct KeyedAnimation {
    std::string key;
    BasicAnimation animation;
    bool told = false;  // its end has been told
  };
  [[nodiscard]] const std::vector<KeyedAnimation>& animations() const { return animations_; }

  // This layer's local time at a media time, through all layers above it.
  [[nodiscard]] Seconds convertTime(Seconds mediaTime) const;

  // Counts the changes of the whole tree; kept at the root.
  [[nodiscard]] std::uint64_t treeRevision() const;

  // Tells the animations of this tree that ended by media time `now`, once each, and removes those that are to
  // be removed on completion. The call may change the tree.
  void finishAnimations(Seconds now);
  // The next media time after `now` at which an animation of this tree that has someone to tell, or is to be
  // removed, ends; absent when there is none (all still, or frozen by a speed of 0).
  [[nodiscard]] std::optional<Seconds> nextAnimationEnd(Seconds now) const;

 private:
  void markChanged();
  std::optional<KeyedAnimation> takeAnimation(const std::string& key);
  void finishAnimations(Seconds now, std::vector<std::function<void(bool)>>& calls);
  // The media time at which this layer's local time is the given one; absent when the layer stands still.
  [[nodiscard]] std::optional<Seconds> mediaTime(Seconds localTime) const;

  LayerProperties properties_;
  std::vector<std::unique_ptr<Layer>> sublayers_;
  std::vector<KeyedAnimation> animations_;
  Layer* superlayer_ = nullptr;
  std::uint64_t revision_ = 0;  // of the tree below, when this is the root
};

}  // namespace lumivane
