// The name of a GL object, freed with its owner.
//
// Threads: made and freed on the same thread, with its context current.
// Owns:    the GL object.
// Errors:  freeing on another thread is a bug and fails an assertion.
#pragma once

#include <epoxy/gl.h>

#include <thread>

namespace lumivane {

class GlName {
 public:
  using Free = void (*)(GLuint name);

  GlName() = default;
  GlName(GLuint name, Free free);
  GlName(GlName&& other) noexcept;
  GlName& operator=(GlName&& other) noexcept;
  GlName(const GlName&) = delete;
  GlName& operator=(const GlName&) = delete;
  ~GlName();

  [[nodiscard]] GLuint get() const { return name_; }
  // Gives the name up without freeing it: its context is lost.
  void abandon() { name_ = 0; }

  [[nodiscard]] static GlName texture();
  [[nodiscard]] static GlName vertexArray();
  [[nodiscard]] static GlName shader(GLenum kind);
  [[nodiscard]] static GlName program();

 private:
  void freeName();

  GLuint name_ = 0;  // 0 = none
  Free free_ = nullptr;
  std::thread::id thread_;
};

}  // namespace lumivane
