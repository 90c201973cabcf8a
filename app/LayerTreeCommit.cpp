#include "app/LayerTreeCommit.h"

#include <algorithm>
#include <utility>

namespace lumivane {
namespace {

// A picture's motion ends in months: nobody waits for that in one go, or every commit would leave a timer behind.
constexpr std::chrono::seconds kLongestWatch{30};

}  // namespace

LayerTreeCommit::LayerTreeCommit(Layer& root, const HostWindow& window, Publish publish, const Clock& clock,
                                 MainLoop& mainLoop)
    : root_(root), window_(window), publish_(std::move(publish)), clock_(clock), mainLoop_(mainLoop) {}

void LayerTreeCommit::commit() {
  const Viewport viewport{window_.frame().size, window_.scale()};
  if (committedRevision_ == root_.treeRevision() && committedViewport_ == viewport) return;
  committedRevision_ = root_.treeRevision();
  committedViewport_ = viewport;
  publish_(makeFrameSnapshot(root_, viewport.size, viewport.scale));
  watchNextAnimationEnd();
}

void LayerTreeCommit::watchNextAnimationEnd() {
  watch_.reset();
  const Seconds now = mediaSeconds(clock_.now());
  const std::optional<Seconds> end = root_.nextAnimationEnd(now);
  if (!end) return;
  watch_ = std::make_shared<bool>(true);
  mainLoop_.after(std::clamp(wholeNanoseconds(*end - now), Nanoseconds{0}, Nanoseconds{kLongestWatch}),
                  [this, watch = std::weak_ptr(watch_)] {
                    if (!watch.expired()) animationsMayHaveEnded();
                  });
}

void LayerTreeCommit::animationsMayHaveEnded() {
  root_.finishAnimations(mediaSeconds(clock_.now()));
  watchNextAnimationEnd();
}

}  // namespace lumivane
