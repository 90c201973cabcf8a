#include "platform/linux/StackTrace.h"

#include <execinfo.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string>

namespace lumivane {
namespace {

constexpr int kMostFrames = 64;

struct FreeMemory {
  void operator()(char** memory) const { std::free(static_cast<void*>(memory)); }
};

}  // namespace

void printStacktrace(Log& log) {
  std::array<void*, kMostFrames> frames{};
  const int count = backtrace(frames.data(), kMostFrames);
  const std::unique_ptr<char*, FreeMemory> symbols(backtrace_symbols(frames.data(), count));
  std::string text;
  for (int i = 0; i < count && symbols; ++i) text += std::string("\n") + symbols.get()[i];
  log.information("backtrace:  (" + text + "\n) .");
}

}  // namespace lumivane
