// The user's regular expressions for pictures that are not to be shown.
//
// Threads: one at a time; during a walk, the walk's.
// Owns:    the pattern lines and their compiled forms, which are made on first use.
// Errors:  a pattern that does not compile is logged once and left out; so is, after a while, one that takes too
//          long: no pattern can hang a walk.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Log.h"

namespace lumivane {

class SkipPatterns {
 public:
  // One regular expression (ICU syntax) a line; white space around it does not count, blank lines are ignored.
  SkipPatterns(std::vector<std::string> lines, Log& log);
  SkipPatterns(SkipPatterns&&) noexcept;
  ~SkipPatterns();

  // Whether a pattern covers the whole path with the first match that begins at its start. That is less than
  // whether it could: "a|ab" does not skip "ab", for its first match is "a". Case counts.
  [[nodiscard]] bool matchesSkipPattern(std::string_view path);

 private:
  class Expression;

  void compile();

  std::vector<std::string> lines_;
  Log& log_;
  std::optional<std::vector<Expression>> expressions_;  // absent: not compiled yet
  std::u16string path_;                                 // the path being tested; kept for its memory
};

// A line that is no regular expression, told while the user types it.
struct SkipPatternFault {
  std::size_t line = 0;       // from 1, blank lines counted
  std::size_t character = 0;  // within the trimmed line, from 1: where reading stopped; 0 = unknown
  std::string reason;         // a few words in English, without a full stop
  bool operator==(const SkipPatternFault&) const = default;
};

// The first faulty line of a text with one pattern a line; absent when SkipPatterns would leave out none.
// Threads: any; a pure function. Cost: compiles every line, so for a text that a person edits.
[[nodiscard]] std::optional<SkipPatternFault> firstSkipPatternFault(std::string_view text);

}  // namespace lumivane
