// Draws a draw list to the current framebuffer, black where nothing is drawn.
//
// Threads: render only, with one and the same context current from construction to destruction.
// Owns:    its programs and textures.
// Units:   the list in points; the framebuffer in pixels. The viewport is stretched to the framebuffer, so that a
//          list made before a change of size is still drawn in place.
// Errors:  construction throws std::runtime_error when the context is too old or a shader does not compile.
#pragma once

#include "compositor/model/Dissolve.h"
#include "compositor/model/DrawList.h"
#include "compositor/model/PixelRect.h"
#include "compositor/render/Painter.h"
#include "compositor/render/Shaders.h"
#include "compositor/render/TextureStore.h"

namespace lumivane {

class Renderer final : public Painter {
 public:
  // The clock measures how long uploads take.
  explicit Renderer(const Clock& clock);

  void want(std::span<const WantedTexture> wanted) override { textures_.want(wanted); }
  UploadProgress upload(Nanoseconds budget) override { return textures_.upload(budget); }
  // A picture whose texture is not there yet is left out.
  void draw(const DrawList& list, SizePx framebuffer) override;
  [[nodiscard]] std::optional<std::string> failure() override;
  void abandon() override;

 private:
  void drawQuad(const Quad& quad);
  void draw(const PictureQuad& quad);
  void draw(const ColorQuad& quad);
  void draw(const ShadowQuad& quad);
  void draw(const Dissolve& dissolve);

  [[nodiscard]] bool isReady(const PictureQuad& quad) const { return textures_.texture(quad.contents) != 0; }
  [[nodiscard]] RectPx toPixels(const RectPt& rect) const;
  [[nodiscard]] RectPx frameOf(const PictureQuad& quad) const;
  static void setRect(GLint uniform, const RectPx& rect);
  // Binds the picture's texture to a unit and tells the program where it lies, under names beginning like this.
  void setPicture(const ShaderProgram& program, const char* const (&names)[5], int unit,
                  const PictureQuad& quad);
  // Draws what lies on the framebuffer of a rectangle: with one program the part where no edge is, with the other the
  // rest. `begin` makes the program that it is given ready for use.
  template <class Begin>
  void drawInParts(const ShaderProgram& inside, const RectPx& part, const ShaderProgram& edges,
                   const RectPx& rect, const Begin& begin);
  // Draws what lies on the framebuffer of a rectangle.
  void drawRect(const ShaderProgram& program, const RectPx& rect);
  [[nodiscard]] RectPx onFramebuffer(const RectPx& rect) const;

  TextureStore textures_;
  GlName vertexArray_;
  ShaderProgram picture_;
  ShaderProgram pictureInside_;
  ShaderProgram color_;
  ShaderProgram shadow_;
  ShaderProgram dissolve_;
  ShaderProgram dissolveInside_;

  // Of the frame being drawn.
  SizePx framebuffer_;
  double pixelsAPointX_ = 1;
  double pixelsAPointY_ = 1;
};

}  // namespace lumivane
