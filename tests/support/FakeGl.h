// GL without any GL: while it lives, every function that the renderer calls succeeds and does nothing, and textures and
// drawings are counted. It calls for no driver, whose own work would be counted along.
//
// Threads: one at a time; one FakeGl at a time.
// Owns:    nothing of GL; libepoxy's pointers to the functions, which get their values back at its end.
// Units:   bytes of pixels, 4 each.
// Errors:  none.
#pragma once

#include <epoxy/gl.h>

#include <cstddef>
#include <functional>
#include <type_traits>
#include <vector>

#include "compositor/model/Bitmap.h"

namespace lumivane {

class FakeGl {
 public:
  FakeGl();
  ~FakeGl();
  FakeGl(const FakeGl&) = delete;
  FakeGl& operator=(const FakeGl&) = delete;

  struct Storage {
    SizePx size;  // of its first level
    int levels = 0;
    bool operator==(const Storage&) const = default;
  };
  struct Sending {
    const void* pixels = nullptr;
    std::size_t bytes = 0;
  };
  std::vector<Storage> storages;  // in the order of making, also those that were freed
  std::vector<Sending> sendings;
  std::size_t drawings = 0;

  // What was sent of one bitmap; twice what was sent twice.
  [[nodiscard]] std::size_t bytesSentOf(const Bitmap& bitmap) const;

 private:
  template <typename Function>
  void replace(Function*& real, std::type_identity_t<Function*> fake) {
    restore_.push_back([&real, before = real] { real = before; });
    real = fake;
  }
  void replaceObjects();
  void replacePrograms();
  void replaceTextures();
  void replaceDrawing();

  std::vector<std::function<void()>> restore_;
  GLuint lastName_ = 0;
};

}  // namespace lumivane
