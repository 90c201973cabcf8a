// Makes the GL context that the pictures are drawn with.
//
// Threads: main only.
// Errors:  a machine without a usable GL is an Error that names what was tried.
#pragma once

#include <QOpenGLContext>
#include <memory>
#include <span>

#include "platform/Result.h"

namespace lumivane {

// OpenGL 3.3 core, else OpenGL ES 3.0; no depth, no stencil, no alpha, in step with the display.
[[nodiscard]] std::vector<QSurfaceFormat> wantedGlFormats();

// The first of the formats that the machine can do. The window must be given the context's format() before it is
// shown, or the two may not fit each other. Requires: QGuiApplication.
[[nodiscard]] Result<std::unique_ptr<QOpenGLContext>> makeGlContext(std::span<const QSurfaceFormat> formats);

}  // namespace lumivane
