// One line on the terminal that says how far a long task is; nothing where no terminal is.
//
// Threads: main only.
// Errors:  none.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace lumivane {

class ProgressLine {
 public:
  // Not active: nothing is ever written.
  ProgressLine(std::ostream& out, bool active) : out_(out), active_(active) {}
  ~ProgressLine() { clear(); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  [[nodiscard]] bool active() const { return active_; }
  // Replaces the line.
  void show(std::string_view text);
  // A bar of `done` out of `total`, with the numbers.
  void showShare(std::size_t done, std::size_t total);
  // Makes room for something else to be written.
  void clear();

 private:
  std::ostream& out_;
  const bool active_;
  bool shown_ = false;
};

// "[#####.....] 5 / 10"
[[nodiscard]] std::string progressBar(std::size_t done, std::size_t total);

}  // namespace lumivane
