// Hands the view's layer tree over to the render thread, once per turn of the main loop and only when it changed,
// and tells the view's animations when they have ended.
//
// Threads: main only.
// Owns:    nothing of the tree.
// Units:   points; media time.
// Errors:  none.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "compositor/model/Layer.h"
#include "compositor/model/LayerSnapshot.h"
#include "platform/Clock.h"
#include "platform/MainLoop.h"
#include "platform/Window.h"

namespace lumivane {

class LayerTreeCommit {
 public:
  // Hands a snapshot to whoever draws it.
  using Publish = std::function<void(std::shared_ptr<const FrameSnapshot>)>;

  LayerTreeCommit(Layer& root, const HostWindow& window, Publish publish, const Clock& clock,
                  MainLoop& mainLoop);

  // At the end of a turn of the main loop: publishes the tree if it, the window's size or its scale changed.
  void commit();

 private:
  struct Viewport {
    SizePt size;
    double scale = 0;
    bool operator==(const Viewport&) const = default;
  };

  // The ends of animations are watched here and not by the render thread, which sleeps while nothing can be seen.
  void watchNextAnimationEnd();
  void animationsMayHaveEnded();

  Layer& root_;
  const HostWindow& window_;
  const Publish publish_;
  const Clock& clock_;
  MainLoop& mainLoop_;
  std::optional<std::uint64_t> committedRevision_;
  Viewport committedViewport_;
  // Replaced with every watch: an older one that still comes does nothing.
  std::shared_ptr<const bool> watch_;
};

}  // namespace lumivane
