#include "platform/DateText.h"

#include <array>
#include <ctime>

namespace lumivane {

std::string dateText(WallTime date) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 64> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S +0000", &parts);
  return text.data();
}

}  // namespace lumivane
