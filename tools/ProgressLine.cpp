#include "tools/ProgressLine.h"

#include <algorithm>

namespace lumivane {

std::string progressBar(std::size_t done, std::size_t total) {
  constexpr std::size_t kWidth = 30;
  done = std::min(done, total);
  const std::size_t filled = total == 0 ? kWidth : done * kWidth / total;
  return "[" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " + std::to_string(done) +
         " / " + std::to_string(total);
}

void ProgressLine::show(std::string_view text) {
  if (!active_) return;
  out_ << "\r" << text << "\x1B[K" << std::flush;
  shown_ = true;
}

void ProgressLine::showShare(std::size_t done, std::size_t total) {
  if (active_) show(progressBar(done, total));
}

void ProgressLine::clear() {
  if (!shown_) return;
  out_ << "\r\x1B[K" << std::flush;
  shown_ = false;
}

}  // namespace lumivane
