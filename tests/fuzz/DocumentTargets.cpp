// What people write: the help document, and patterns of paths to leave out.
#include <algorithm>

#include "collection/SkipPatterns.h"
#include "platform/PrintableText.h"
#include "settings/richtext/RtfReader.h"
#include "tests/fuzz/FuzzTargets.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {

// Links lead outside, numbers lead to what there is, and nothing is made of nothing.
void fuzzHelp(std::string_view bytes) {
  const Result<RichText> document = readRtf(bytes);
  if (!document) return promise(!document.error().empty());
  const RichText& text = document.value();
  for (const std::string& link : text.links) {
    promise(link.starts_with("https://") || link.starts_with("http://") || link.starts_with("mailto:"));
  }
  std::size_t size = 0;
  for (const RichTextParagraph& paragraph : text.paragraphs) {
    promise(paragraph.headingLevel >= 0 && paragraph.headingLevel <= 6);
    promise(paragraph.spaceBefore >= 0 && paragraph.spaceAfter >= 0);
    for (const RichTextSpan& span : paragraph.spans) {
      promise(isValidUtf8(span.text));
      promise(span.link <= text.links.size() && span.picture <= text.pictures.size());
      size += span.text.size();
    }
  }
  for (const RichTextPicture& picture : text.pictures) {
    promise(picture.width > 0 && picture.height > 0 && !picture.png.empty());
    size += picture.png.size();
  }
  promise(size <= bytes.size() * 4);
}

// The bytes before the first zero are patterns, a line each, those after it a path.
void fuzzSkipPatterns(std::string_view bytes) {
  const std::string_view patterns = bytes.substr(0, bytes.find('\0'));
  const std::string_view path =
      patterns.size() < bytes.size() ? bytes.substr(patterns.size() + 1) : "/a/b.jpg";
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin <= patterns.size();) {
    const std::size_t end = std::min(patterns.find('\n', begin), patterns.size());
    lines.emplace_back(patterns.substr(begin, end - begin));
    begin = end + 1;
  }
  const auto fault = firstSkipPatternFault(std::string(patterns));
  promise(!fault || (fault->line >= 1 && fault->line <= lines.size() && !fault->reason.empty()));
  RecordingLog log;
  SkipPatterns skip(lines, log);
  const bool once = skip.matchesSkipPattern(path);
  const bool twice = skip.matchesSkipPattern(path);
  // A pattern may only be given up in between, for the time it takes.
  promise(once == twice || !log.entries().empty());
}

}  // namespace lumivane
