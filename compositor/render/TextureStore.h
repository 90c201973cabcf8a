// The textures of the pictures that are wanted: taken up in slices, kept while wanted, freed afterwards.
//
// Threads: render only.
// Owns:    the textures, and one spare one to use its storage again.
// Units:   time budgets of the given clock.
// Errors:  a bitmap that is too large for the GL in all its levels is never there.
#pragma once

#include <map>
#include <memory>
#include <span>
#include <vector>

#include "compositor/model/DrawList.h"
#include "compositor/render/Painter.h"
#include "compositor/render/TextureUpload.h"
#include "platform/Clock.h"

namespace lumivane {

class TextureStore {
 public:
  // `largestSide`: the longest side of a texture that the GL allows, in pixels.
  TextureStore(const Clock& clock, int largestSide);

  // What is wanted from now on; what is not wanted any more is freed.
  void want(std::span<const WantedTexture> wanted);

  // Sends slices until the budget is used up or all is sent; at least one slice. What is shown comes first, and of
  // that, what cannot be drawn at all yet.
  UploadProgress upload(Nanoseconds budget);

  // The texture to draw a bitmap with; 0 = none yet.
  [[nodiscard]] GLuint texture(const BitmapRef& bitmap) const;

  [[nodiscard]] std::size_t count() const { return pictures_.size(); }
  void abandon();

 private:
  struct Picture {
    std::unique_ptr<TextureUpload> current;
    std::unique_ptr<TextureUpload> larger;  // takes the place of current once it is the better one
    std::size_t wantedLevel = 0;
    bool shown = false;
  };
  // By identity, not by address: a new bitmap may lie where a dropped one lay.
  using Pictures = std::map<std::weak_ptr<const Bitmap>, Picture, std::owner_less<>>;

  void want(const WantedTexture& texture);
  [[nodiscard]] std::unique_ptr<TextureUpload> begin(const BitmapRef& bitmap, std::size_t level);
  // Sends one slice of the most urgent picture; false when there is none.
  bool uploadSlice(UploadProgress& progress);
  [[nodiscard]] Picture* mostUrgent();
  void dropUnwanted(std::span<const WantedTexture> wanted);
  void keepSpare(std::unique_ptr<TextureUpload> upload);

  const Clock& clock_;
  const int largestSide_;
  Pictures pictures_;
  std::vector<Picture*> order_;  // as wanted: the shown ones first
  std::unique_ptr<TextureUpload> spare_;
};

}  // namespace lumivane
