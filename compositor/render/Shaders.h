// The shader programs, compiled for the current context.
//
// Threads: render only.
// Owns:    its program.
// Units:   rectangles as (left, bottom, right, top) in device pixels, origin lower left.
// Errors:  a program that does not compile throws std::runtime_error with the compiler's words.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "compositor/render/GlName.h"

namespace lumivane {

enum class Shader {
  Picture,         // a texture in a rectangle
  PictureInside,   // the same for pixels that lie in it whole
  Color,           // a filled rectangle
  Shadow,          // a filled rectangle, blurred
  Dissolve,        // two textures in their rectangles, the second over the first
  DissolveInside,  // the same for pixels that lie in both whole
};

class ShaderProgram {
 public:
  explicit ShaderProgram(Shader shader);

  void use() const;
  // Where the uniform is, to be used with glUniform. -1 = the program has none of that name, which GL ignores.
  [[nodiscard]] GLint uniform(std::string_view name) const;
  void abandon() { program_.abandon(); }

 private:
  GlName program_;
  std::map<std::string, GLint, std::less<>> uniforms_;
};

}  // namespace lumivane
