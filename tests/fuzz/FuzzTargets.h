// Every reader of foreign bytes in the program, as something that bytes can be thrown at: by libFuzzer, and by the test
// that replays what was found worth keeping.
//
// Threads: one at a time.
// Errors:  a promise that is broken ends the process, as a crash would.
#pragma once

#include <source_location>
#include <span>
#include <string_view>

namespace lumivane {

struct FuzzTarget {
  std::string_view name;  // also of its folder in corpus/
  void (*run)(std::string_view bytes);
};

[[nodiscard]] std::span<const FuzzTarget> fuzzTargets();

// Something that must hold whatever the bytes are.
void promise(bool kept, std::source_location where = std::source_location::current());

// Readers of files of our own
void fuzzImageList(std::string_view bytes);
void fuzzLastRun(std::string_view bytes);
void fuzzSettings(std::string_view bytes);
void fuzzBookmark(std::string_view bytes);
void fuzzRequest(std::string_view bytes);
void fuzzHelp(std::string_view bytes);
void fuzzSkipPatterns(std::string_view bytes);
// Readers of what others make
void fuzzEdid(std::string_view bytes);
void fuzzPhotoLibrary(std::string_view bytes);
void fuzzDecoderAnswer(std::string_view bytes);

}  // namespace lumivane
