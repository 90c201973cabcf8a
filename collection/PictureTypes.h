// Tells by a file's name whether it is a picture.
//
// Threads: any; pure functions.
// Errors:  none.
#pragma once

#include <string_view>

namespace lumivane {

// Whether the name's extension, its case ignored, is one of a picture that can be decoded: the common formats and
// the raw formats of cameras. Not among them: documents and drawings (pdf, eps, svg).
// A leading dot starts no extension: ".jpg" has none.
[[nodiscard]] bool isPictureFileName(std::string_view name);

}  // namespace lumivane
