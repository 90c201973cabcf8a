// libjpeg behind a C++ face: reads the header and then the rows of one JPEG file.
//
// Threads: one at a time.
// Owns:    the library's state.
// Units:   pixels.
// Errors:  every operation says whether it went well; after a failure the reader is of no more use.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "compositor/model/PlanarLayout.h"
#include "imaging/decode/PictureFile.h"
#include "platform/Geometry.h"

namespace lumivane {

class JpegReader {
 public:
  // Requires: `file` outlives the reader.
  explicit JpegReader(const PictureFile& file);
  ~JpegReader();

  [[nodiscard]] bool readHeader();
  // After readHeader():
  [[nodiscard]] SizePx size() const;
  [[nodiscard]] int components() const;  // 1 grey, 3 colour, 4 ink
  [[nodiscard]] std::vector<std::byte> colourProfile() const;
  // The file ended where more was expected.
  [[nodiscard]] bool cameToTheEnd() const;

  // How brightness and colour lie in the file, where they can be taken as they are: grey, or YCbCr with colour planes of
  // full or half size.
  [[nodiscard]] std::optional<Chroma> planes() const;

  // Begins to decode at 1/denominator (1, 2, 4 or 8) of the size, sides rounded up; all scans of a progressive
  // picture are read here.
  [[nodiscard]] bool start(int denominator);
  // After start():
  [[nodiscard]] SizePx outputSize() const;
  // Reads rows of RGBA into `rows`, `count` of them `strideBytes` apart.
  [[nodiscard]] bool readRows(std::uint8_t* rows, std::size_t strideBytes, int count);

  // Begins to decode the planes at full size. Requires: planes() has a value.
  [[nodiscard]] bool startPlanes();
  // After startPlanes(): reads the next rows of all planes to their places in `pixels`. Requires: `layout` is the one of
  // the picture's size and planes(), and fits into `pixels`.
  [[nodiscard]] bool readPlaneRows(const PlanarLayout& layout, std::span<std::byte> pixels);
  // How many rows of the picture have been read.
  [[nodiscard]] int rowsRead() const;
  // Something was missing or unreadable so far, so that what was drawn is wrong.
  [[nodiscard]] bool damaged() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace lumivane
