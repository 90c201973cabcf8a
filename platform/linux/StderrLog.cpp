#include "platform/linux/StderrLog.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr std::string_view kIndent = "    ";

std::string isoTime(WallTime time) {
  const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch());
  const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
  const std::time_t whole = seconds.count();
  std::tm parts{};
  if (::gmtime_r(&whole, &parts) == nullptr) return "-";
  std::array<char, 32> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
  std::array<char, 8> fraction{};
  std::snprintf(fraction.data(), fraction.size(), ".%03dZ", static_cast<int>((sinceEpoch - seconds).count()));
  return std::string(text.data(), length) + fraction.data();
}

void writeWhole(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;  // an entry that cannot be written is lost
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

std::string_view levelName(LogLevel level) {
  return level == LogLevel::Error ? "error" : "information";
}

std::string loggableText(std::string_view text) {
  return isValidUtf8(text) ? std::string(text) : lossyAscii(text);
}

std::string logLine(WallTime time, LogLevel level, std::string_view text) {
  std::string line = isoTime(time);
  line.append(" ").append(levelName(level)).append(" ");
  const std::string loggable = loggableText(text);
  std::string_view rest = loggable;
  for (;;) {
    const std::size_t end = rest.find('\n');
    line += printable(rest.substr(0, end));
    line += '\n';
    if (end == std::string_view::npos) return line;
    rest.remove_prefix(end + 1);
    if (!rest.empty() && rest.front() != '\n') line += kIndent;
  }
}

StderrLog::StderrLog(const Clock& clock, int descriptor) : clock_(clock), descriptor_(descriptor) {}

void StderrLog::write(std::string_view text, LogLevel level) {
  const std::scoped_lock lock(mutex_);  // the time as well, so that times never run backwards
  writeWhole(descriptor_, logLine(clock_.wallTime(), level, text));
}

}  // namespace lumivane
