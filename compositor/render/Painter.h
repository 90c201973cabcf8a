// What the frame loop asks of the renderer. The loop's own tests put a double in its place.
//
// Threads: render only, with the surface's context current.
// Owns:    GL objects.
// Units:   the list in points; the framebuffer in pixels.
// Errors:  see the operations.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "compositor/model/DrawList.h"
#include "platform/Clock.h"

namespace lumivane {

struct UploadProgress {
  bool sent = false;         // something was sent
  bool pending = false;      // there is more to send
  bool shownBetter = false;  // a texture that is shown has become usable or more detailed
};

class Painter {
 public:
  virtual ~Painter() = default;

  // Which textures are wanted from now on; what is not wanted any more is freed.
  virtual void want(std::span<const WantedTexture> wanted) = 0;

  // Sends textures until the budget is used up or all is sent, and at least a little.
  virtual UploadProgress upload(Nanoseconds budget) = 0;

  // Draws the list to the current framebuffer, black where nothing is drawn.
  virtual void draw(const DrawList& list, SizePx framebuffer) = 0;

  // What went wrong since it was asked last, if anything did.
  [[nodiscard]] virtual std::optional<std::string> failure() = 0;

  // Gives all GL objects up without freeing them: their context is lost.
  virtual void abandon() = 0;
};

// Makes a painter for the current context; throws std::runtime_error with the reason when that cannot be.
using PainterMaker = std::function<std::unique_ptr<Painter>()>;

}  // namespace lumivane
