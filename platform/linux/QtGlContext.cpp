#include "platform/linux/QtGlContext.h"

#include <QSurfaceFormat>
#include <string>
#include <vector>

namespace lumivane {
namespace {

QSurfaceFormat plainFormat(QSurfaceFormat::RenderableType type, int majorVersion, int minorVersion) {
  QSurfaceFormat format;
  format.setRenderableType(type);
  format.setVersion(majorVersion, minorVersion);
  format.setRedBufferSize(8);
  format.setGreenBufferSize(8);
  format.setBlueBufferSize(8);
  format.setAlphaBufferSize(0);  // with alpha, Wayland would let the desktop show through
  format.setDepthBufferSize(0);
  format.setStencilBufferSize(0);
  format.setSwapInterval(1);
  return format;
}

// A context of which one learns when the graphics hardware was reset. Not every driver can make one.
QSurfaceFormat tellingOfLoss(QSurfaceFormat format) {
  format.setOption(QSurfaceFormat::ResetNotification);
  return format;
}

// A driver may hand out less than it was asked for.
bool keepsPromise(const QSurfaceFormat& got, const QSurfaceFormat& wanted) {
  const bool sameKind = (got.renderableType() == QSurfaceFormat::OpenGLES) ==
                        (wanted.renderableType() == QSurfaceFormat::OpenGLES);
  return sameKind && got.version() >= wanted.version();
}

std::string nameOf(const QSurfaceFormat& format) {
  return std::string(format.renderableType() == QSurfaceFormat::OpenGLES ? "OpenGL ES " : "OpenGL ") +
         std::to_string(format.majorVersion()) + '.' + std::to_string(format.minorVersion());
}

}  // namespace

std::vector<QSurfaceFormat> wantedGlFormats() {
  QSurfaceFormat desktop = plainFormat(QSurfaceFormat::OpenGL, 3, 3);
  desktop.setProfile(QSurfaceFormat::CoreProfile);
  const QSurfaceFormat embedded = plainFormat(QSurfaceFormat::OpenGLES, 3, 0);
  return {tellingOfLoss(desktop), desktop, tellingOfLoss(embedded), embedded};
}

Result<std::unique_ptr<QOpenGLContext>> makeGlContext(std::span<const QSurfaceFormat> formats) {
  std::string tried;
  for (const QSurfaceFormat& format : formats) {
    auto context = std::make_unique<QOpenGLContext>();
    context->setFormat(format);
    if (context->create() && keepsPromise(context->format(), format)) return context;
    tried += (tried.empty() ? "" : ", ") + nameOf(format);
  }
  return Error{"no usable OpenGL (tried: " + tried + ")"};
}

}  // namespace lumivane
