#include "app/PointerHiding.h"

namespace lumivane {

PointerHiding::PointerHiding(HostWindow& window, const Clock& clock, MainLoop& mainLoop)
    : window_(window), clock_(clock), mainLoop_(mainLoop) {
  window_.setReportsMouseMoves(true);
  mouseMoved();
}

void PointerHiding::mouseMoved() {
  if (forGood_) return;
  lastMove_ = clock_.now();
  if (hidden_) window_.setCursorHidden(false);
  hidden_ = false;
  if (!watching_) watch(kRest);
}

void PointerHiding::hideForGood() {
  forGood_ = true;
  window_.setCursorHidden(true);
}

void PointerHiding::watch(Nanoseconds wait) {
  watching_ = true;
  mainLoop_.after(wait, [this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) look();
  });
}

void PointerHiding::look() {
  watching_ = false;
  if (forGood_) return;
  const Nanoseconds left = lastMove_ + kRest - clock_.now();
  if (left > Nanoseconds{0}) return watch(left);
  hidden_ = true;
  window_.setCursorHidden(true);
}

}  // namespace lumivane
