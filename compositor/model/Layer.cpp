#include "compositor/model/Layer.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "compositor/model/AnimationTiming.h"

namespace lumivane {
namespace {

using DidStop = std::function<void(bool finished)>;

bool hasEnded(const Layer::KeyedAnimation& keyed, Seconds localTime) {
  return localTime >= endTime(keyed.animation) - kEndTolerance;
}

bool isAwaited(const Layer::KeyedAnimation& keyed) {
  return !keyed.told && (keyed.animation.didStop || keyed.animation.removedOnCompletion);
}

void tellRemoved(const Layer::KeyedAnimation& removed) {
  if (!removed.told && removed.animation.didStop) removed.animation.didStop(false);
}

// Marks the ended animations of one layer as told and collects their calls.
void collectEnded(std::vector<Layer::KeyedAnimation>& animations, Seconds localTime,
                  std::vector<DidStop>& calls) {
  for (Layer::KeyedAnimation& keyed : animations) {
    if (keyed.told || !hasEnded(keyed, localTime)) continue;
    keyed.told = true;
    if (keyed.animation.didStop) calls.push_back(keyed.animation.didStop);
  }
}

}  // namespace

Layer::~Layer() = default;

Layer* Layer::addSublayer(std::unique_ptr<Layer> layer) {
  layer->superlayer_ = this;
  sublayers_.push_back(std::move(layer));
  markChanged();
  return sublayers_.back().get();
}

Layer* Layer::addSublayerBelow(std::unique_ptr<Layer> layer, const Layer* sibling) {
  const auto place = std::ranges::find(sublayers_, sibling, &std::unique_ptr<Layer>::get);
  layer->superlayer_ = this;
  Layer* const added = sublayers_.insert(place, std::move(layer))->get();
  markChanged();
  return added;
}

std::unique_ptr<Layer> Layer::removeSublayer(const Layer* layer) {
  const auto place = std::ranges::find(sublayers_, layer, &std::unique_ptr<Layer>::get);
  if (place == sublayers_.end()) return nullptr;
  std::unique_ptr<Layer> removed = std::move(*place);
  sublayers_.erase(place);
  removed->superlayer_ = nullptr;
  markChanged();
  return removed;
}

std::unique_ptr<Layer> Layer::replaceSublayer(const Layer* old, std::unique_ptr<Layer> replacement) {
  const auto place = std::ranges::find(sublayers_, old, &std::unique_ptr<Layer>::get);
  if (place == sublayers_.end()) {
    addSublayer(std::move(replacement));
    return nullptr;
  }
  replacement->superlayer_ = this;
  std::unique_ptr<Layer> replaced = std::exchange(*place, std::move(replacement));
  replaced->superlayer_ = nullptr;
  markChanged();
  return replaced;
}

void Layer::addAnimation(BasicAnimation animation, const std::string& key, Seconds now) {
  assert(fitsKeyPath(animation.from, animation.keyPath) && fitsKeyPath(animation.to, animation.keyPath));
  if (!animation.beginTime) animation.beginTime = convertTime(now);
  const std::optional<KeyedAnimation> replaced = takeAnimation(key);
  animations_.push_back({key, std::move(animation)});
  markChanged();
  if (replaced) tellRemoved(*replaced);
}

void Layer::removeAnimation(const std::string& key) {
  if (const auto removed = takeAnimation(key)) tellRemoved(*removed);
}

std::optional<Layer::KeyedAnimation> Layer::takeAnimation(const std::string& key) {
  const auto place = std::ranges::find(animations_, key, &KeyedAnimation::key);
  if (place == animations_.end()) return std::nullopt;
  std::optional<KeyedAnimation> taken = std::move(*place);
  animations_.erase(place);
  markChanged();
  return taken;
}

const BasicAnimation* Layer::animation(const std::string& key) const {
  const auto place = std::ranges::find(animations_, key, &KeyedAnimation::key);
  return place == animations_.end() ? nullptr : &place->animation;
}

Seconds Layer::convertTime(Seconds mediaTime) const {
  return localTime(properties_, superlayer_ == nullptr ? mediaTime : superlayer_->convertTime(mediaTime));
}

std::uint64_t Layer::treeRevision() const {
  const Layer* root = this;
  while (root->superlayer_ != nullptr) root = root->superlayer_;
  return root->revision_;
}

void Layer::finishAnimations(Seconds now) {
  // Collected first and called afterwards: a call may take out the very layer that is being looked at.
  std::vector<DidStop> calls;
  finishAnimations(now, calls);
  for (const DidStop& call : calls) call(true);
}

void Layer::finishAnimations(Seconds now, std::vector<DidStop>& calls) {
  collectEnded(animations_, convertTime(now), calls);
  const auto removed = std::erase_if(animations_, [](const KeyedAnimation& keyed) {
    return keyed.told && keyed.animation.removedOnCompletion;
  });
  if (removed > 0) markChanged();
  for (const auto& sublayer : sublayers_) sublayer->finishAnimations(now, calls);
}

std::optional<Seconds> Layer::nextAnimationEnd(Seconds now) const {
  std::optional<Seconds> next;
  const auto consider = [&](std::optional<Seconds> end) {
    if (end && (!next || *end < *next)) next = end;
  };
  for (const KeyedAnimation& keyed : animations_) {
    if (!isAwaited(keyed)) continue;
    if (const auto end = mediaTime(endTime(keyed.animation))) consider(std::max(*end, now));
  }
  for (const auto& sublayer : sublayers_) consider(sublayer->nextAnimationEnd(now));
  return next;
}

std::optional<Seconds> Layer::mediaTime(Seconds localTime) const {
  if (!(properties_.speed > 0)) return std::nullopt;
  const Seconds above = (localTime - properties_.timeOffset) / properties_.speed + properties_.beginTime;
  return superlayer_ == nullptr ? above : superlayer_->mediaTime(above);
}

void Layer::markChanged() {
  Layer* root = this;
  while (root->superlayer_ != nullptr) root = root->superlayer_;
  ++root->revision_;
}

}  // namespace lumivane
