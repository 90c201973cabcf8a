#include "settings/richtext/RtfReader.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <utility>

#include "settings/richtext/RtfCharacters.h"
#include "settings/richtext/RtfTokens.h"

namespace lumivane {
namespace {

constexpr std::size_t kMostBytes = std::size_t{2} << 20;
constexpr std::size_t kMostDepth = 64;
constexpr std::size_t kMostParagraphs = 20'000;
constexpr std::size_t kMostSpans = 200'000;
constexpr std::size_t kMostTabStops = 16;
constexpr std::size_t kMostFonts = 1000;
constexpr std::size_t kMostInstruction = 2048;  // bytes of a field's instruction
constexpr std::int32_t kTwipsInPoint = 20;
constexpr std::int32_t kMostTwips = 1000 * kTwipsInPoint;
constexpr int kHeadingLevels = 6;

// What a group's text is for.
enum class Destination { Body, Nothing, Fonts, FieldInstruction, Picture };

// What a group inherits from the one around it, and forgets at its end.
struct Group {
  Destination destination = Destination::Body;
  RichTextSpan format;              // without text
  RichTextParagraph paragraph;      // without spans
  std::int32_t fallbackLength = 1;  // characters after \u for readers that know no Unicode
  std::int32_t font = 0;
  bool isField = false;
  bool isFresh = true;      // nothing but its brace was read
  bool isOptional = false;  // \*: to be passed over by whoever does not know the word behind it
};

// Groups whose text does not belong to the document's, though they are not marked as optional.
constexpr std::string_view kPassedOver[] = {
    "annotation", "bkmkend", "bkmkstart", "buptim",  "colortbl", "comment",  "creatim",
    "filetbl",    "footer",  "footerf",   "footerl", "footerr",  "footnote", "ftncn",
    "ftnsep",     "header",  "headerf",   "headerl", "headerr",  "info",     "listtable",
    "nonshppict", "object",  "private",   "printim", "revtim",   "revtbl",   "rxe",
    "stylesheet", "tc",      "template",  "txe",     "xe"};

bool isPassedOver(std::string_view word) {
  return std::ranges::find(kPassedOver, word) != std::end(kPassedOver);
}

double pointsOf(const RtfToken& token) {
  return static_cast<double>(std::clamp(token.parameter.value_or(0), -kMostTwips, kMostTwips)) /
         kTwipsInPoint;
}

bool isOn(const RtfToken& token) {
  return token.parameter.value_or(1) != 0;
}

// The address in: HYPERLINK "https://..."; empty for anything that is not to be followed.
std::string addressOf(std::string_view instruction) {
  constexpr std::string_view kKeyword = "HYPERLINK";
  const std::size_t keyword = instruction.find(kKeyword);
  if (keyword == std::string_view::npos) return {};
  const std::size_t begin = instruction.find('"', keyword);
  if (begin == std::string_view::npos) return {};
  const std::size_t end = instruction.find('"', begin + 1);
  if (end == std::string_view::npos) return {};
  const std::string_view address = instruction.substr(begin + 1, end - begin - 1);
  const bool known =
      address.starts_with("https://") || address.starts_with("http://") || address.starts_with("mailto:");
  const bool printable = std::ranges::all_of(address, [](char c) { return c > ' ' && c < '\x7F'; });
  return known && printable ? std::string(address) : std::string();
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : tokens_(bytes) {}

  Result<RichText> read() {
    while (true) {
      const Result<RtfToken> token = tokens_.next();
      if (!token) return Error{token.error()};
      if (token.value().kind == RtfToken::Kind::End) return Error{"it ends in the middle of a group"};
      if (const char* problem = take(token.value())) return Error{problem};
      if (groups_.empty()) break;
    }
    if (!paragraph_.empty()) endParagraph(RichTextParagraph{});
    return std::move(document_);
  }

 private:
  const char* take(const RtfToken& token) {
    switch (token.kind) {
      case RtfToken::Kind::GroupBegins:
        return beginGroup();
      case RtfToken::Kind::GroupEnds:
        return endGroup();
      case RtfToken::Kind::Word:
        return takeWord(token);
      case RtfToken::Kind::Symbol:
        return takeSymbol(static_cast<char>(token.byte));
      default:
        return takeByte(token.byte);
    }
  }

  const char* beginGroup() {
    if (groups_.size() >= kMostDepth) return "its groups are too deep";
    fallbackLeft_ = 0;
    groups_.push_back(groups_.empty() ? Group{} : groups_.back());
    Group& group = groups_.back();
    group.isField = false;
    group.isFresh = true;
    group.isOptional = false;
    return nullptr;
  }

  const char* endGroup() {
    if (!begun_) return "it does not begin with {\\rtf";
    fallbackLeft_ = 0;
    const Destination ended = groups_.back().destination;
    groups_.pop_back();
    const bool pictureEnds =
        ended == Destination::Picture && !groups_.empty() && groups_.back().destination == Destination::Body;
    if (pictureEnds) return endPicture();
    const bool instructionEnds = ended == Destination::FieldInstruction && !groups_.empty() &&
                                 groups_.back().destination != Destination::FieldInstruction;
    if (instructionEnds) endInstruction();
    return nullptr;
  }

  // The field is the group around the instruction; its result, a later group in it, inherits the link.
  void endInstruction() {
    const std::string address = addressOf(std::exchange(instruction_, {}));
    if (address.empty() || !groups_.back().isField) return;
    document_.links.push_back(address);
    groups_.back().format.link = document_.links.size();
  }

  // A picture of another kind, or without a size, is left out.
  const char* endPicture() {
    RichTextPicture picture = std::exchange(picture_, {});
    nibbles_ = 0;
    if (!std::exchange(pictureIsPng_, false) || picture.png.empty() || picture.width <= 0 ||
        picture.height <= 0)
      return nullptr;
    if (++spans_ > kMostSpans) return "it has too many pictures";
    document_.pictures.push_back(std::move(picture));
    RichTextSpan span;
    span.picture = document_.pictures.size();
    paragraph_.push_back(std::move(span));
    return nullptr;
  }

  void describePicture(const RtfToken& token) {
    if (token.word == "pngblip") pictureIsPng_ = true;
    if (token.word == "picwgoal") picture_.width = pointsOf(token);
    if (token.word == "pichgoal") picture_.height = pointsOf(token);
  }

  // Two hexadecimal digits are a byte of the picture's file.
  const char* takePictureDigit(char digit) {
    const int value = hexDigit(digit);
    if (value < 0) return nullptr;
    if (nibbles_++ % 2 == 0) {
      picture_.png.push_back(static_cast<char>(value << 4));
    } else {
      picture_.png.back() = static_cast<char>(picture_.png.back() | value);
    }
    return nullptr;
  }

  const char* takeWord(const RtfToken& token) {
    if (groups_.empty()) return "it does not begin with {\\rtf";
    Group& group = groups_.back();
    const bool opens = std::exchange(group.isFresh, false);
    if (!begun_) {
      begun_ = token.word == "rtf";
      return begun_ ? nullptr : "it does not begin with {\\rtf";
    }
    if (fallbackLeft_ > 0) return --fallbackLeft_, nullptr;
    if (token.word == "u") return takeUnicode(token.parameter.value_or(0));
    if (opens && redirect(group, token.word)) return nullptr;
    if (group.destination == Destination::Picture) return describePicture(token), nullptr;
    if (const std::uint32_t named = namedCharacter(token.word); named != 0) return put(named);
    if (token.word == "par" || token.word == "sect" || token.word == "page") return takeParagraphEnd(group);
    if (!formatParagraph(group.paragraph, token)) formatCharacters(group, token);
    return nullptr;
  }

  // The first word of a group may say what its text is for.
  static bool redirect(Group& group, std::string_view word) {
    if (group.destination == Destination::Nothing) return true;
    if (word == "fonttbl") {
      group.destination = Destination::Fonts;
    } else if (word == "field") {
      group.isField = true;
    } else if (word == "pict") {
      if (group.destination == Destination::Body) group.destination = Destination::Picture;
    } else if (word == "fldinst") {
      group.destination = Destination::FieldInstruction;
    } else if (group.isOptional || isPassedOver(word)) {
      group.destination = Destination::Nothing;
    } else {
      return false;
    }
    return true;
  }

  static bool formatParagraph(RichTextParagraph& paragraph, const RtfToken& token) {
    const std::string_view word = token.word;
    if (word == "pard") {
      paragraph = {};
    } else if (word == "outlinelevel") {
      paragraph.headingLevel = std::clamp(token.parameter.value_or(0), 0, kHeadingLevels - 1) + 1;
    } else if (word == "li") {
      paragraph.leftIndent = pointsOf(token);
    } else if (word == "fi") {
      paragraph.firstLineIndent = pointsOf(token);
    } else if (word == "sb") {
      paragraph.spaceBefore = std::max(0.0, pointsOf(token));
    } else if (word == "sa") {
      paragraph.spaceAfter = std::max(0.0, pointsOf(token));
    } else if (word == "tx") {
      if (paragraph.tabStops.size() < kMostTabStops) paragraph.tabStops.push_back(pointsOf(token));
    } else {
      return false;
    }
    return true;
  }

  void formatCharacters(Group& group, const RtfToken& token) {
    const std::string_view word = token.word;
    RichTextSpan& format = group.format;
    if (word == "b") {
      format.bold = isOn(token);
    } else if (word == "i") {
      format.italic = isOn(token);
    } else if (word == "ul") {
      format.underlined = isOn(token);
    } else if (word == "ulnone") {
      format.underlined = false;
    } else if (word == "plain") {
      format = {.text = {}, .link = format.link};
    } else if (word == "uc") {
      group.fallbackLength = std::clamp(token.parameter.value_or(1), 0, 8);
    } else if (word == "f") {
      group.font = token.parameter.value_or(0);
      format.fixedPitch = fixedPitchFonts_.contains(group.font);
    } else if (group.destination == Destination::Fonts &&
               (word == "fmodern" || (word == "fprq" && token.parameter == 1))) {
      if (fixedPitchFonts_.size() < kMostFonts) fixedPitchFonts_.insert(group.font);
    }
  }

  const char* takeSymbol(char symbol) {
    if (!begun_) return "it does not begin with {\\rtf";
    if (fallbackLeft_ > 0) return --fallbackLeft_, nullptr;
    Group& group = groups_.back();
    if (symbol == '*' && group.isFresh) return group.isOptional = true, nullptr;
    group.isFresh = false;
    if (symbol == '\n' || symbol == '\r') return takeParagraphEnd(group);
    const std::uint32_t character = symbolCharacter(symbol);
    return character == 0 ? nullptr : put(character);
  }

  const char* takeByte(unsigned char byte) {
    if (!begun_) return "it does not begin with {\\rtf";
    groups_.back().isFresh = false;
    if (fallbackLeft_ > 0) return --fallbackLeft_, nullptr;
    if (groups_.back().destination == Destination::Picture) return takePictureDigit(static_cast<char>(byte));
    if (byte < 0x20 && byte != '\t') return nullptr;
    return put(fromCodePage1252(byte));
  }

  // One unit of UTF-16, negative above 0x7FFF. The two of a pair come one after the other.
  const char* takeUnicode(std::int32_t number) {
    fallbackLeft_ = groups_.back().fallbackLength;
    const auto unit = static_cast<std::uint32_t>(number) & 0xFFFF;
    const std::uint32_t high = std::exchange(highSurrogate_, 0);
    if (unit >= 0xD800 && unit <= 0xDBFF) return highSurrogate_ = unit, nullptr;
    const bool paired = high != 0 && unit >= 0xDC00 && unit <= 0xDFFF;
    return put(paired ? 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00) : unit);
  }

  const char* put(std::uint32_t character) {
    highSurrogate_ = 0;
    const Group& group = groups_.back();
    if (group.destination == Destination::FieldInstruction && instruction_.size() < kMostInstruction) {
      appendUtf8(instruction_, character);
    }
    if (group.destination != Destination::Body) return nullptr;
    if (paragraph_.empty() || !looksAlike(paragraph_.back(), group.format)) {
      if (++spans_ > kMostSpans) return "it changes its looks too often";
      paragraph_.push_back(group.format);
    }
    appendUtf8(paragraph_.back().text, character);
    return nullptr;
  }

  static bool looksAlike(const RichTextSpan& one, const RichTextSpan& other) {
    return one.bold == other.bold && one.italic == other.italic && one.underlined == other.underlined &&
           one.fixedPitch == other.fixedPitch && one.link == other.link && one.picture == other.picture;
  }

  const char* takeParagraphEnd(const Group& group) {
    if (group.destination != Destination::Body) return nullptr;
    if (document_.paragraphs.size() >= kMostParagraphs) return "it has too many paragraphs";
    endParagraph(group.paragraph);
    return nullptr;
  }

  void endParagraph(RichTextParagraph paragraph) {
    paragraph.spans = std::exchange(paragraph_, {});
    document_.paragraphs.push_back(std::move(paragraph));
  }

  RtfTokens tokens_;
  RichText document_;
  std::vector<Group> groups_;            // the innermost last
  std::vector<RichTextSpan> paragraph_;  // that is being read
  std::set<std::int32_t> fixedPitchFonts_;
  std::string instruction_;  // of the field that is being read
  RichTextPicture picture_;  // that is being read
  bool pictureIsPng_ = false;
  std::size_t nibbles_ = 0;  // of the picture's bytes
  std::uint32_t highSurrogate_ = 0;
  std::int32_t fallbackLeft_ = 0;  // characters to pass over
  std::size_t spans_ = 0;
  bool begun_ = false;
};

}  // namespace

Result<RichText> readRtf(std::string_view bytes) {
  if (bytes.size() > kMostBytes) return Error{"it is too large"};
  return Reader(bytes).read();
}

}  // namespace lumivane
