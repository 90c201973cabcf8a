#include "compositor/render/Renderer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <utility>
#include <variant>

#include "compositor/model/OrientationMap.h"

namespace lumivane {
namespace {

// Beyond three deviations a shadow is fainter than one step of 255.
constexpr double kShadowReach = 3;
// Less blur than that is what any edge between pixels gets.
constexpr double kLeastDeviationPx = 0.3;

constexpr const char* kOnlyPicture[] = {"pixels", "rect", "along", "across", "opacity"};
constexpr const char* kUpperPicture[] = {"upperPixels", "upperRect", "upperAlong", "upperAcross",
                                         "upperOpacity"};

// The first look at the context: whether it will do, and how large its textures may be.
int largestTextureSide() {
  const int least = epoxy_is_desktop_gl() ? 33 : 30;
  if (epoxy_gl_version() < least) throw std::runtime_error("the GL context is older than 3.3 core or ES 3.0");
  GLint side = 0;
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &side);
  return side;
}

GLint minFilter(ContentsFilter filter) {
  return filter == ContentsFilter::Trilinear ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR;
}

void setColor(GLint uniform, const Color& color, double opacity) {
  const float alpha = color.alpha * static_cast<float>(opacity);
  glUniform4f(uniform, color.red * alpha, color.green * alpha, color.blue * alpha, alpha);
}

// One row of the orientation's map, from fractions of the rectangle to pixels of the framebuffer. Worked out in
// double precision here, once, rather than in single precision at every pixel.
void setMap(GLint uniform, const float (&row)[3], double left, double bottom, double width, double height) {
  const double x = row[0] / width;
  const double y = row[1] / height;
  glUniform3f(uniform, static_cast<float>(x), static_cast<float>(y),
              static_cast<float>(row[2] - x * left - y * bottom));
}

}  // namespace

Renderer::Renderer(const Clock& clock)
    : textures_(clock, largestTextureSide()),
      vertexArray_(GlName::vertexArray()),
      picture_(Shader::Picture),
      pictureInside_(Shader::PictureInside),
      color_(Shader::Color),
      shadow_(Shader::Shadow),
      dissolve_(Shader::Dissolve),
      dissolveInside_(Shader::DissolveInside) {}

void Renderer::draw(const DrawList& list, SizePx framebuffer) {
  framebuffer_ = framebuffer;
  pixelsAPointX_ = framebuffer.width / list.viewport.width;
  pixelsAPointY_ = framebuffer.height / list.viewport.height;
  glViewport(0, 0, framebuffer.width, framebuffer.height);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glClearColor(0, 0, 0, 1);
  glClear(GL_COLOR_BUFFER_BIT);
  if (!(list.viewport.width > 0 && list.viewport.height > 0)) return;

  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);  // the window stays opaque
  glBindVertexArray(vertexArray_.get());
  glDisable(GL_BLEND);  // blending over black changes nothing, so the first quad goes without
  glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
  for (std::size_t i = 0; i < list.quads.size(); ++i) {
    const auto dissolve =
        i + 1 < list.quads.size() ? dissolveOf(list.quads[i], list.quads[i + 1]) : std::nullopt;
    if (dissolve && isReady(*dissolve->lower) && isReady(*dissolve->upper)) {
      draw(*dissolve);
      ++i;
    } else {
      drawQuad(list.quads[i]);
    }
    glEnable(GL_BLEND);
  }
}

void Renderer::drawQuad(const Quad& quad) {
  std::visit([this](const auto& one) { draw(one); }, quad);
}

void Renderer::draw(const PictureQuad& quad) {
  if (!isReady(quad)) return;
  const RectPx frame = frameOf(quad);
  drawInParts(pictureInside_, wholePixels(frame), picture_, touchedPixels(frame),
              [&](const ShaderProgram& program) { setPicture(program, kOnlyPicture, 0, quad); });
}

void Renderer::draw(const ColorQuad& quad) {
  const RectPx rect = toPixels(quad.frame);
  color_.use();
  setRect(color_.uniform("rect"), rect);
  setColor(color_.uniform("color"), quad.color, quad.opacity);
  drawRect(color_, touchedPixels(rect));
}

void Renderer::draw(const ShadowQuad& quad) {
  const double deviation =
      std::max(kLeastDeviationPx, quad.radius * std::sqrt(pixelsAPointX_ * pixelsAPointY_));
  const RectPx rect = toPixels(quad.rect);
  shadow_.use();
  setRect(shadow_.uniform("rect"), rect);
  setColor(shadow_.uniform("color"), quad.color, quad.opacity);
  glUniform1f(shadow_.uniform("deviation"), static_cast<float>(deviation));
  drawRect(shadow_, touchedPixels(grown(rect, deviation * kShadowReach)));
}

void Renderer::draw(const Dissolve& dissolve) {
  const RectPx lower = frameOf(*dissolve.lower);
  const RectPx upper = frameOf(*dissolve.upper);
  drawInParts(dissolveInside_, common(wholePixels(lower), wholePixels(upper)), dissolve_,
              touchedPixels(joined(lower, upper)), [&](const ShaderProgram& program) {
                setPicture(program, kOnlyPicture, 0, *dissolve.lower);
                setPicture(program, kUpperPicture, 1, *dissolve.upper);
              });
}

RectPx Renderer::toPixels(const RectPt& rect) const {
  return {rect.origin.x * pixelsAPointX_, rect.origin.y * pixelsAPointY_,
          (rect.origin.x + rect.size.width) * pixelsAPointX_,
          (rect.origin.y + rect.size.height) * pixelsAPointY_};
}

// At a scale like 1.25 a window seldom is a whole number of pixels for each of its points: only here is it known where
// whole pixels lie.
RectPx Renderer::frameOf(const PictureQuad& quad) const {
  const RectPx frame = toPixels(quad.frame);
  if (!quad.pixelForPixel) return frame;
  const SizePx pixels = quad.contents->displaySize();
  const double left = std::round(frame.left);
  const double bottom = std::round(frame.bottom);
  return {left, bottom, left + pixels.width, bottom + pixels.height};
}

void Renderer::setPicture(const ShaderProgram& program, const char* const (&names)[5], int unit,
                          const PictureQuad& quad) {
  const RectPx rect = frameOf(quad);
  const double width = rect.right - rect.left;
  const double height = rect.top - rect.bottom;
  const OrientationMap map = orientationMap(quad.contents->orientation());
  glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
  glBindTexture(GL_TEXTURE_2D, textures_.texture(quad.contents));
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minFilter(quad.minification));
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glActiveTexture(GL_TEXTURE0);
  glUniform1i(program.uniform(names[0]), unit);
  setRect(program.uniform(names[1]), rect);
  setMap(program.uniform(names[2]), map.along, rect.left, rect.bottom, width, height);
  setMap(program.uniform(names[3]), map.across, rect.left, rect.bottom, width, height);
  glUniform1f(program.uniform(names[4]), static_cast<float>(quad.opacity));
}

template <class Begin>
void Renderer::drawInParts(const ShaderProgram& inside, const RectPx& part, const ShaderProgram& edges,
                           const RectPx& rect, const Begin& begin) {
  const RectPx seen = onFramebuffer(rect);
  const RectPx seenPart = common(seen, part);
  if (!isEmpty(seenPart)) {
    inside.use();
    begin(inside);
    drawRect(inside, seenPart);
  }
  bool begun = false;
  for (const RectPx& strip : around(seen, seenPart)) {
    if (isEmpty(strip)) continue;
    if (!std::exchange(begun, true)) {
      edges.use();
      begin(edges);
    }
    drawRect(edges, strip);
  }
}

RectPx Renderer::onFramebuffer(const RectPx& rect) const {
  return common(rect,
                {0, 0, static_cast<double>(framebuffer_.width), static_cast<double>(framebuffer_.height)});
}

void Renderer::drawRect(const ShaderProgram& program, const RectPx& rect) {
  const RectPx drawn = onFramebuffer(rect);
  if (isEmpty(drawn)) return;
  setRect(program.uniform("drawn"), drawn);
  glUniform2f(program.uniform("target"), static_cast<float>(framebuffer_.width),
              static_cast<float>(framebuffer_.height));
  glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void Renderer::setRect(GLint uniform, const RectPx& rect) {
  glUniform4f(uniform, static_cast<float>(rect.left), static_cast<float>(rect.bottom),
              static_cast<float>(rect.right), static_cast<float>(rect.top));
}

std::optional<std::string> Renderer::failure() {
  const GLenum error = glGetError();
  if (error == GL_NO_ERROR) return std::nullopt;
  char text[32];
  std::snprintf(text, sizeof text, "GL error 0x%04X", static_cast<unsigned>(error));
  return text;
}

void Renderer::abandon() {
  textures_.abandon();
  vertexArray_.abandon();
  for (ShaderProgram* program : {&picture_, &pictureInside_, &color_, &shadow_, &dissolve_, &dissolveInside_})
    program->abandon();
}

}  // namespace lumivane
