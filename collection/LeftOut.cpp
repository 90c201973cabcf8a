#include "collection/LeftOut.h"

namespace lumivane {

std::string_view ruleText(LeftOut rule) {
  switch (rule) {
    case LeftOut::Hidden:
      return "hidden";
    case LeftOut::Link:
      return "link";
    case LeftOut::NoFile:
      return "no file";
    case LeftOut::Type:
      return "type";
    case LeftOut::FileSize:
      return "file size";
    case LeftOut::PixelSize:
      return "pixel size";
    case LeftOut::NoPicture:
      return "no picture";
    case LeftOut::Unreadable:
      return "unreadable";
    case LeftOut::Name:
      return "name";
    case LeftOut::SkipPattern:
      return "skip pattern";
    case LeftOut::NotInIndex:
      return "not in the index";
  }
  return "";
}

}  // namespace lumivane
