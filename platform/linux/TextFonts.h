// Which fonts text is set in. The rule: Andale Mono where it is installed, else the first of fixed width among
// fontconfig's answers for "monospace". The very first answer is not always one: for some languages it is whatever font
// has their script.
//
// Threads: main only.
// Errors:  an empty name = there is no such font.
#pragma once

#include <string>

struct _FcConfig;  // NOLINT(bugprone-reserved-identifier): the name that fontconfig gave it

namespace lumivane {

inline constexpr const char* kWantedFont = "Andale Mono";

struct TextFonts {
  std::string fixedWidth;
  std::string proportional;  // for what the one of fixed width does not have, before all other fonts
  std::string emoji;         // coloured ones
  bool operator==(const TextFonts&) const = default;
};

// Asks fontconfig; nullptr = as the user has set it up.
[[nodiscard]] TextFonts chooseTextFonts(_FcConfig* config = nullptr);

}  // namespace lumivane
