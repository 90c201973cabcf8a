// Reads an RTF document: headings, paragraphs, indents, tab stops, bold, italic, underlined and fixed-pitch words,
// links, pictures in PNG. Colours, sizes, other pictures, tables and whatever else it does not know are passed over.
//
// Threads: any; a pure function.
// Errors:  fails for what is no RTF, is larger or deeper than any help text, or ends in the middle. No input makes it
//          take more than a small multiple of its size in memory.
#pragma once

#include <string_view>

#include "platform/Result.h"
#include "settings/richtext/RichText.h"

namespace lumivane {

[[nodiscard]] Result<RichText> readRtf(std::string_view bytes);

}  // namespace lumivane
