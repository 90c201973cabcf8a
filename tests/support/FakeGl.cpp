#include "tests/support/FakeGl.h"

#include <array>
#include <cstring>

namespace lumivane {
namespace {

// The functions are plain C: nothing but this tells them whose they are.
FakeGl* current = nullptr;

constexpr std::array kUniforms = {"drawn",     "target",     "pixels",      "rect",        "along",
                                  "across",    "opacity",    "color",       "deviation",   "upperPixels",
                                  "upperRect", "upperAlong", "upperAcross", "upperOpacity"};
constexpr std::size_t kBytesPerPixel = 4;
constexpr GLint kLargestTexture = 16384;

}  // namespace

FakeGl::FakeGl() {
  current = this;
  replaceObjects();
  replacePrograms();
  replaceTextures();
  replaceDrawing();
}

FakeGl::~FakeGl() {
  for (const auto& restore : restore_) restore();
  current = nullptr;
}

std::size_t FakeGl::bytesSentOf(const Bitmap& bitmap) const {
  const void* const first = bitmap.levelBytes(0).data();
  const void* const end = bitmap.levelBytes(bitmap.levels().size() - 1).data() + kBytesPerPixel;
  std::size_t bytes = 0;
  for (const Sending& sending : sendings) {
    if (!std::less{}(sending.pixels, first) && std::less{}(sending.pixels, end)) bytes += sending.bytes;
  }
  return bytes;
}

void FakeGl::replaceObjects() {
  replace(glGetString, [](GLenum) { return reinterpret_cast<const GLubyte*>("OpenGL ES 3.0"); });
  replace(glGetIntegerv, [](GLenum, GLint* value) { *value = kLargestTexture; });
  replace(glGetError, []() -> GLenum { return GL_NO_ERROR; });
  replace(glGenTextures, [](GLsizei, GLuint* name) { *name = ++current->lastName_; });
  replace(glDeleteTextures, [](GLsizei, const GLuint*) {});
  replace(glGenVertexArrays, [](GLsizei, GLuint* name) { *name = ++current->lastName_; });
  replace(glDeleteVertexArrays, [](GLsizei, const GLuint*) {});
  replace(glBindVertexArray, [](GLuint) {});
}

void FakeGl::replacePrograms() {
  replace(glCreateShader, [](GLenum) { return ++current->lastName_; });
  replace(glShaderSource, [](GLuint, GLsizei, const GLchar* const*, const GLint*) {});
  replace(glCompileShader, [](GLuint) {});
  replace(glGetShaderiv, [](GLuint, GLenum, GLint* value) { *value = GL_TRUE; });
  replace(glDeleteShader, [](GLuint) {});
  replace(glCreateProgram, []() { return ++current->lastName_; });
  replace(glAttachShader, [](GLuint, GLuint) {});
  replace(glLinkProgram, [](GLuint) {});
  replace(glGetProgramiv, [](GLuint, GLenum what, GLint* value) {
    *value = what == GL_ACTIVE_UNIFORMS ? static_cast<GLint>(kUniforms.size()) : GL_TRUE;
  });
  replace(glGetActiveUniform,
          [](GLuint, GLuint index, GLsizei room, GLsizei*, GLint*, GLenum*, GLchar* name) {
            std::strncpy(name, kUniforms[index], static_cast<std::size_t>(room) - 1);
          });
  replace(glGetUniformLocation, [](GLuint, const GLchar*) { return 1; });
  replace(glUseProgram, [](GLuint) {});
  replace(glDeleteProgram, [](GLuint) {});
  replace(glUniform1i, [](GLint, GLint) {});
  replace(glUniform1f, [](GLint, GLfloat) {});
  replace(glUniform2f, [](GLint, GLfloat, GLfloat) {});
  replace(glUniform3f, [](GLint, GLfloat, GLfloat, GLfloat) {});
  replace(glUniform4f, [](GLint, GLfloat, GLfloat, GLfloat, GLfloat) {});
}

void FakeGl::replaceTextures() {
  replace(glActiveTexture, [](GLenum) {});
  replace(glBindTexture, [](GLenum, GLuint) {});
  replace(glTexParameteri, [](GLenum, GLenum, GLint) {});
  replace(glPixelStorei, [](GLenum, GLint) {});
  replace(glTexStorage2D, [](GLenum, GLsizei levels, GLenum, GLsizei width, GLsizei height) {
    current->storages.push_back({{width, height}, levels});
  });
  replace(glTexSubImage2D,
          [](GLenum, GLint, GLint, GLint, GLsizei width, GLsizei height, GLenum, GLenum, const void* pixels) {
            const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
            current->sendings.push_back({pixels, count * kBytesPerPixel});
          });
}

void FakeGl::replaceDrawing() {
  replace(glViewport, [](GLint, GLint, GLsizei, GLsizei) {});
  replace(glColorMask, [](GLboolean, GLboolean, GLboolean, GLboolean) {});
  replace(glClearColor, [](GLfloat, GLfloat, GLfloat, GLfloat) {});
  replace(glClear, [](GLbitfield) {});
  replace(glEnable, [](GLenum) {});
  replace(glDisable, [](GLenum) {});
  replace(glBlendFunc, [](GLenum, GLenum) {});
  replace(glDrawArrays, [](GLenum, GLint, GLsizei) { ++current->drawings; });
}

}  // namespace lumivane
