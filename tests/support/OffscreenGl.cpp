#include "tests/support/OffscreenGl.h"

#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include <cstring>

namespace lumivane {
namespace {

EGLDisplay surfacelessDisplay() {
  const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
  if (extensions == nullptr || std::strstr(extensions, "EGL_MESA_platform_surfaceless") == nullptr)
    return nullptr;
  EGLDisplay display = eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
  if (display == nullptr || eglInitialize(display, nullptr, nullptr) == EGL_FALSE) return nullptr;
  return display;
}

EGLContext newContext(EGLDisplay display, GlKind kind) {
  static constexpr EGLint kDesktop[] = {EGL_CONTEXT_MAJOR_VERSION,
                                        3,
                                        EGL_CONTEXT_MINOR_VERSION,
                                        3,
                                        EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                        EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                        EGL_NONE};
  static constexpr EGLint kEmbedded[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_NONE};
  const bool desktop = kind == GlKind::Desktop;
  eglBindAPI(desktop ? EGL_OPENGL_API : EGL_OPENGL_ES_API);
  return eglCreateContext(display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, desktop ? kDesktop : kEmbedded);
}

}  // namespace

bool OffscreenGl::available(GlKind kind) {
  return OffscreenGl({1, 1}, kind).makeCurrent();
}

OffscreenGl::OffscreenGl(SizePx size, GlKind kind) : size_(size), kind_(kind) {}

OffscreenGl::~OffscreenGl() {
  if (context_ == nullptr) return;
  eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_);
  glDeleteFramebuffers(1, &framebuffer_);
  glDeleteTextures(1, &color_);
  eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  eglDestroyContext(display_, context_);
}

bool OffscreenGl::makeCurrent() {
  const bool first = context_ == nullptr;
  if (first && !createContext()) return false;
  eglBindAPI(kind_ == GlKind::Desktop ? EGL_OPENGL_API : EGL_OPENGL_ES_API);
  if (eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_) == EGL_FALSE) return false;
  if (first) createFramebuffer();
  return true;
}

bool OffscreenGl::createContext() {
  display_ = surfacelessDisplay();
  context_ = display_ == nullptr ? nullptr : newContext(display_, kind_);
  return context_ != nullptr;
}

void OffscreenGl::createFramebuffer() {
  glGenTextures(1, &color_);
  glBindTexture(GL_TEXTURE_2D, color_);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, size_.width, size_.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
  glGenFramebuffers(1, &framebuffer_);
  glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
  glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, color_, 0);
}

void OffscreenGl::doneCurrent() {
  eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

ReadBack OffscreenGl::read() const {
  ReadBack result{size_, std::vector<std::uint8_t>(static_cast<std::size_t>(size_.width * size_.height * 4))};
  std::vector<std::uint8_t> upward(result.bytes.size());
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, size_.width, size_.height, GL_RGBA, GL_UNSIGNED_BYTE, upward.data());
  const auto row = static_cast<std::size_t>(size_.width * 4);
  for (std::size_t y = 0; y < static_cast<std::size_t>(size_.height); ++y) {
    const auto from = (static_cast<std::size_t>(size_.height) - 1 - y) * row;
    std::memcpy(&result.bytes[y * row], &upward[from], row);
  }
  return result;
}

}  // namespace lumivane
