// The process that opens picture files for the slideshow. It is started by the slideshow, with a line to it, and ends
// with it.
#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <thread>

#include "imaging/decode/FileImageDecoder.h"
#include "imaging/decode/HeaderDimensions.h"
#include "imaging/decode/PictureMetadata.h"
#include "imaging/decode/VipsCodec.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/SpawnedProgram.h"
#include "tools/decoder/PictureService.h"
#include "tools/decoder/Sandbox.h"

namespace {

using namespace lumivane;

constexpr int kBadUsage = 2;
// Addresses that programs and libraries take up before the first picture.
constexpr std::uint64_t kLoadedBytes = std::uint64_t{1} << 30;

bool hasLine() {
  int type = 0;
  socklen_t length = sizeof type;
  return ::getsockopt(kChildSocket, SOL_SOCKET, SO_TYPE, &type, &length) == 0 && type == SOCK_SEQPACKET;
}

// The number after --memory; 0 = no limit, nothing when it is no number.
std::optional<std::uint64_t> memoryLimit(int count, char** words) {
  if (count == 1) return 0;
  if (count != 3 || std::string_view(words[1]) != "--memory") return std::nullopt;
  const std::string_view text(words[2]);
  std::uint64_t bytes = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bytes);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return bytes;
}

// A picture may keep us busy for a long time, or for ever, and whoever would put an end to it may be gone. A signal at
// the end of the starting thread would come too early: the show's threads come and go.
void endWithTheShow() {
  pollfd line{kChildSocket, 0, 0};
  while (::poll(&line, 1, -1) <= 0 || (line.revents & (POLLHUP | POLLERR | POLLNVAL)) == 0) {
  }
  std::_Exit(0);
}

// Where memory runs out, the system should rather end this process than the show.
void goFirst() {
  constexpr std::string_view kFirst = "500";
  const FileDescriptor score(::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
  [[maybe_unused]] const ssize_t written = ::write(score.get(), kFirst.data(), kFirst.size());  // only a wish
}

// The system knows us by the name that we were started by, which is that of an open file of the show's.
void takeName() {
  ::prctl(PR_SET_NAME, "lumivane-decoder");  // cut off at 15 letters, as that of every program
}

int serve(std::uint64_t memoryBytes) {
  takeName();
  goFirst();
  HelloAnswer hello;
  hello.filesReadOnly = makeFilesReadOnly();
  ::mallopt(M_ARENA_MAX, 2);                    // each takes up 64 MiB of addresses
  ::setenv("VIPS_DISC_THRESHOLD", "1000g", 1);  // large pictures stay in memory: no file can be written
  (void)startVips();                            // without it there are JPEGs at least
  startExiv();
  limitResources(memoryBytes, LentPixels::kMostMappedBytes + kLoadedBytes);
  hello.systemCallsFiltered = filterSystemCalls();
  const std::thread watch(endWithTheShow);  // never joined: the process ends here or there
  MessageReceiver receiver(kChildSocket, MessageReceiver::Descriptors::Taken);
  const auto pixels = std::make_shared<LentPixels>(kChildSocket, receiver);
  FileImageDecoder decoder(pixels);
  HeaderDimensions dimensions;
  PictureService(kChildSocket, receiver, *pixels, decoder, dimensions).run(hello);
  std::_Exit(0);  // no library has anything to finish
}

}  // namespace

int main(int count, char* words[]) {
  const std::optional<std::uint64_t> memory = memoryLimit(count, words);
  if (!memory || !hasLine()) {
    std::fputs("lumivane-decoder is started by the slideshow, which has pictures opened by it.\n", stderr);
    return kBadUsage;
  }
  return serve(*memory);
}
