// The places outside that the preferences lead to: the only ones, and all of them here.
//
// Threads: main only.
// Errors:  a target that is no URL is logged; the desktop is asked all the same, for nothing. What the desktop cannot
//          open is its own affair.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Log.h"
#include "platform/Workspace.h"

namespace lumivane {

struct OutsideLink {
  std::string_view target;
  std::string_view failure;  // what the log says when the target is no URL
};

inline constexpr OutsideLink kDonationLink{"https://lumivane.example/donate.html",
                                           "Creating donorbox URL failed"};
inline constexpr OutsideLink kFeedbackLink{"mailto:feedback@lumivane.example?subject=Lumivane%20Feedback",
                                           "creating mailto URL failed"};
inline constexpr OutsideLink kHomepageLink{"https://lumivane.example/index.html",
                                           "Creating homepage URL failed"};

// The text as a URL: a scheme, and after it only what a URL may hold. Absent: it is none.
[[nodiscard]] std::optional<std::string> urlOf(std::string_view text);

void openLink(const OutsideLink& link, Workspace& workspace, Log& log);

}  // namespace lumivane
