#include "compositor/render/GlName.h"

#include <cassert>
#include <utility>

namespace lumivane {

GlName::GlName(GLuint name, Free free) : name_(name), free_(free), thread_(std::this_thread::get_id()) {}

GlName::GlName(GlName&& other) noexcept
    : name_(std::exchange(other.name_, 0)), free_(other.free_), thread_(other.thread_) {}

GlName& GlName::operator=(GlName&& other) noexcept {
  if (this == &other) return *this;
  freeName();
  name_ = std::exchange(other.name_, 0);
  free_ = other.free_;
  thread_ = other.thread_;
  return *this;
}

GlName::~GlName() {
  freeName();
}

void GlName::freeName() {
  if (name_ == 0) return;
  assert(thread_ == std::this_thread::get_id());
  free_(std::exchange(name_, 0));
}

GlName GlName::texture() {
  GLuint name = 0;
  glGenTextures(1, &name);
  return {name, [](GLuint texture) { glDeleteTextures(1, &texture); }};
}

GlName GlName::vertexArray() {
  GLuint name = 0;
  glGenVertexArrays(1, &name);
  return {name, [](GLuint array) { glDeleteVertexArrays(1, &array); }};
}

GlName GlName::shader(GLenum kind) {
  return {glCreateShader(kind), [](GLuint shader) { glDeleteShader(shader); }};
}

GlName GlName::program() {
  return {glCreateProgram(), [](GLuint program) { glDeleteProgram(program); }};
}

}  // namespace lumivane
