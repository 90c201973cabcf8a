// A document of rich text as plain data: what its words are and what they are meant to be, not how they look.
//
// Threads: none of its own; values.
// Units:   points.
// Errors:  none.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace lumivane {

// Words that look alike.
struct RichTextSpan {
  std::string text{};  // UTF-8, with tabs; U+2028 begins a new line of the same paragraph
  bool bold = false;
  bool italic = false;
  bool underlined = false;
  bool fixedPitch = false;
  std::size_t link = 0;     // number in RichText::links, from 1; 0 = none
  std::size_t picture = 0;  // number in RichText::pictures, from 1; 0 = none. In place of the text
  bool operator==(const RichTextSpan&) const = default;
};

struct RichTextParagraph {
  int headingLevel = 0;  // 1 to 6, 1 the highest; 0 = no heading
  double leftIndent = 0;
  double firstLineIndent = 0;  // beyond leftIndent; negative for a hanging paragraph
  double spaceBefore = 0;
  double spaceAfter = 0;
  std::vector<double> tabStops{};  // from the left edge, ascending as in the document
  std::vector<RichTextSpan> spans{};
};

struct RichTextPicture {
  std::string png;  // a whole PNG file, as far as the document tells
  double width = 0;
  double height = 0;
};

struct RichText {
  std::vector<RichTextParagraph> paragraphs;
  std::vector<std::string> links;  // http, https and mailto alone
  std::vector<RichTextPicture> pictures;
};

}  // namespace lumivane
