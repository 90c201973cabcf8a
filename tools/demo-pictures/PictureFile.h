// Writes a painted picture as a JPEG file with its caption, keywords, date and position.
//
// Threads: any; each file by one at a time.
// Errors:  a Result with the reason; an unfinished file is not left behind under the picture's name.
#pragma once

#include <string>

#include "platform/Result.h"
#include "tools/demo-pictures/DemoPictures.h"

namespace lumivane::demo {

[[nodiscard]] Result<Done> writePicture(const Canvas& canvas, const DemoPicture& picture,
                                        const std::string& path);

}  // namespace lumivane::demo
