#include "compositor/render/Shaders.h"

#include <stdexcept>
#include <string>

namespace lumivane {
namespace {

constexpr const char* kDesktopHeader = "#version 330 core\n";
constexpr const char* kEmbeddedHeader =
    "#version 300 es\nprecision highp float;\nprecision highp sampler2D;\n";

// Four corners of the drawn rectangle, made from the vertex number: no buffers. The coordinates in the textures are
// linear in the place on the screen.
constexpr const char* kVertex = R"(
uniform vec4 drawn;
uniform vec2 target;
uniform vec3 along;
uniform vec3 across;
uniform vec3 upperAlong;
uniform vec3 upperAcross;
out vec2 at;
out vec2 upperAt;
void main() {
  vec2 corner = vec2(float(gl_VertexID & 1), float(gl_VertexID >> 1));
  vec3 place = vec3(mix(drawn.xy, drawn.zw, corner), 1.0);
  at = vec2(dot(along, place), dot(across, place));
  upperAt = vec2(dot(upperAlong, place), dot(upperAcross, place));
  gl_Position = vec4(place.xy / target * 2.0 - 1.0, 0.0, 1.0);
}
)";

// How much of the pixel lies inside the rectangle: its edges fall between pixels while it moves. All colours are
// premultiplied.
constexpr const char* kCommon = R"(
in vec2 at;
in vec2 upperAt;
out vec4 result;
float covered(vec4 rect) {
  vec2 depth = min(gl_FragCoord.xy - rect.xy, rect.zw - gl_FragCoord.xy);
  vec2 part = clamp(depth + 0.5, 0.0, 1.0);
  return part.x * part.y;
}
)";

constexpr const char* kPicture = R"(
uniform sampler2D pixels;
uniform vec4 rect;
uniform float opacity;
void main() { result = texture(pixels, at) * (opacity * covered(rect)); }
)";

// Nearly all pixels of a show: a processor that draws them spends a third of its time on the edges that are not there.
constexpr const char* kPictureInside = R"(
uniform sampler2D pixels;
uniform float opacity;
void main() { result = texture(pixels, at) * opacity; }
)";

constexpr const char* kColor = R"(
uniform vec4 rect;
uniform vec4 color;
void main() { result = color * covered(rect); }
)";

// A blurred rectangle is the product of two blurred steps each way, and a blurred step is an error function; its
// approximation is Abramowitz and Stegun's 7.1.27, good to 0.0005.
constexpr const char* kShadow = R"(
uniform vec4 rect;
uniform vec4 color;
uniform float deviation;
vec2 step_(vec2 x) {
  vec2 a = abs(x);
  vec2 p = 1.0 + a * (0.278393 + a * (0.230389 + a * (0.000972 + a * 0.078108)));
  p *= p;
  return sign(x) * (1.0 - 1.0 / (p * p));
}
void main() {
  float unit = 1.0 / (deviation * 1.41421356);
  vec2 part = (step_((gl_FragCoord.xy - rect.xy) * unit) - step_((gl_FragCoord.xy - rect.zw) * unit)) * 0.5;
  result = color * (part.x * part.y);
}
)";

constexpr const char* kDissolve = R"(
uniform sampler2D pixels;
uniform vec4 rect;
uniform float opacity;
uniform sampler2D upperPixels;
uniform vec4 upperRect;
uniform float upperOpacity;
void main() {
  vec4 lower = texture(pixels, at) * (opacity * covered(rect));
  vec4 upper = texture(upperPixels, upperAt) * (upperOpacity * covered(upperRect));
  result = upper + lower * (1.0 - upper.a);
}
)";

constexpr const char* kDissolveInside = R"(
uniform sampler2D pixels;
uniform float opacity;
uniform sampler2D upperPixels;
uniform float upperOpacity;
void main() {
  vec4 lower = texture(pixels, at) * opacity;
  vec4 upper = texture(upperPixels, upperAt) * upperOpacity;
  result = upper + lower * (1.0 - upper.a);
}
)";

const char* fragmentSource(Shader shader) {
  switch (shader) {
    case Shader::Picture:
      return kPicture;
    case Shader::PictureInside:
      return kPictureInside;
    case Shader::Color:
      return kColor;
    case Shader::Shadow:
      return kShadow;
    case Shader::Dissolve:
      return kDissolve;
    case Shader::DissolveInside:
      return kDissolveInside;
  }
  return "";
}

GlName compile(GLenum kind, const char* common, const char* source) {
  GlName shader = GlName::shader(kind);
  const char* header = epoxy_is_desktop_gl() ? kDesktopHeader : kEmbeddedHeader;
  const char* parts[] = {header, common, source};
  glShaderSource(shader.get(), 3, parts, nullptr);
  glCompileShader(shader.get());
  GLint compiled = GL_FALSE;
  glGetShaderiv(shader.get(), GL_COMPILE_STATUS, &compiled);
  if (compiled == GL_TRUE) return shader;
  std::string words(1024, '\0');
  GLsizei length = 0;
  glGetShaderInfoLog(shader.get(), static_cast<GLsizei>(words.size()), &length, words.data());
  words.resize(static_cast<std::size_t>(length));
  throw std::runtime_error("a shader does not compile: " + words);
}

// Asked once: drivers that work on a thread of their own have to stop for a question.
std::map<std::string, GLint, std::less<>> uniformsOf(GLuint program) {
  std::map<std::string, GLint, std::less<>> uniforms;
  GLint count = 0;
  glGetProgramiv(program, GL_ACTIVE_UNIFORMS, &count);
  for (GLint i = 0; i < count; ++i) {
    char name[64] = {};
    GLint size = 0;
    GLenum type = 0;
    glGetActiveUniform(program, static_cast<GLuint>(i), sizeof name, nullptr, &size, &type, name);
    uniforms[name] = glGetUniformLocation(program, name);
  }
  return uniforms;
}

}  // namespace

ShaderProgram::ShaderProgram(Shader shader) : program_(GlName::program()) {
  const GlName vertex = compile(GL_VERTEX_SHADER, "", kVertex);
  const GlName fragment = compile(GL_FRAGMENT_SHADER, kCommon, fragmentSource(shader));
  glAttachShader(program_.get(), vertex.get());
  glAttachShader(program_.get(), fragment.get());
  glLinkProgram(program_.get());
  GLint linked = GL_FALSE;
  glGetProgramiv(program_.get(), GL_LINK_STATUS, &linked);
  if (linked != GL_TRUE) throw std::runtime_error("a shader program does not link");
  uniforms_ = uniformsOf(program_.get());
}

void ShaderProgram::use() const {
  glUseProgram(program_.get());
}

GLint ShaderProgram::uniform(std::string_view name) const {
  const auto found = uniforms_.find(name);
  return found == uniforms_.end() ? -1 : found->second;
}

}  // namespace lumivane
