#include "platform/linux/MessageSocket.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace lumivane {
namespace {

// Each packet begins with a byte that says whether more of its message follows.
constexpr std::byte kLast{0};
constexpr std::byte kMoreFollows{1};
// Well below what a socket takes at once by default.
constexpr std::size_t kPacketBytes = std::size_t{32} << 10;

struct DescriptorRoom {
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> bytes{};
};

bool sendPacket(int socket, std::byte kind, std::span<const std::byte> part, int descriptor, int flags) {
  std::array<iovec, 2> pieces{iovec{&kind, 1}, iovec{const_cast<std::byte*>(part.data()), part.size()}};
  msghdr header{};
  header.msg_iov = pieces.data();
  header.msg_iovlen = pieces.size();
  DescriptorRoom room;
  if (descriptor >= 0) {
    header.msg_control = room.bytes.data();
    header.msg_controllen = room.bytes.size();
    cmsghdr* const control = CMSG_FIRSTHDR(&header);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(control), &descriptor, sizeof descriptor);
  }
  ssize_t sent = 0;
  do {
    sent = ::sendmsg(socket, &header, MSG_NOSIGNAL | flags);
  } while (sent < 0 && errno == EINTR);
  return sent == static_cast<ssize_t>(part.size() + 1);
}

// What came along, if it is one descriptor; there was no room for more.
FileDescriptor descriptorIn(msghdr& header) {
  for (cmsghdr* control = CMSG_FIRSTHDR(&header); control != nullptr;
       control = CMSG_NXTHDR(&header, control)) {
    if (control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS) continue;
    if (control->cmsg_len != CMSG_LEN(sizeof(int))) continue;
    int descriptor = -1;
    std::memcpy(&descriptor, CMSG_DATA(control), sizeof descriptor);
    return FileDescriptor(descriptor);
  }
  return {};
}

timespec timespecOf(Nanoseconds span) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span);
  return {static_cast<time_t>(seconds.count()), static_cast<long>((span - seconds).count())};
}

}  // namespace

bool sendMessage(int socket, std::span<const std::byte> message, int descriptor, Waiting waiting) {
  if (message.empty() || message.size() > kLongestMessage) return false;
  const int flags = waiting == Waiting::Never ? MSG_DONTWAIT : 0;
  while (!message.empty()) {
    const auto part = message.first(std::min(message.size(), kPacketBytes));
    message = message.subspan(part.size());
    if (!sendPacket(socket, message.empty() ? kLast : kMoreFollows, part, descriptor, flags)) return false;
    descriptor = -1;
  }
  return true;
}

MessageArrival MessageReceiver::receive(std::vector<std::byte>& message,
                                        std::optional<Nanoseconds> patience) {
  pollfd waited{socket_, POLLIN, 0};
  const timespec limit = timespecOf(std::max(patience.value_or(Nanoseconds{0}), Nanoseconds{0}));
  const int ready = ::ppoll(&waited, 1, patience ? &limit : nullptr, nullptr);
  if (ready < 0) return errno == EINTR ? MessageArrival::Nothing : MessageArrival::Gone;
  return ready == 0 ? MessageArrival::Nothing : take(message);
}

MessageArrival MessageReceiver::take(std::vector<std::byte>& message) {
  const std::size_t before = begun_.size();
  begun_.resize(before + kPacketBytes);
  std::byte kind{};
  std::array<iovec, 2> pieces{iovec{&kind, 1}, iovec{begun_.data() + before, kPacketBytes}};
  msghdr header{};
  header.msg_iov = pieces.data();
  header.msg_iovlen = pieces.size();
  DescriptorRoom room;
  // Without room for them, descriptors that a peer sends are closed by the system.
  if (descriptors_ == Descriptors::Taken) {
    header.msg_control = room.bytes.data();
    header.msg_controllen = room.bytes.size();
  }
  const ssize_t got = ::recvmsg(socket_, &header, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
  const bool later = got < 0 && (errno == EAGAIN || errno == EINTR);
  begun_.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got - 1, 0)));
  if (later) return MessageArrival::Nothing;
  if (got > 0) {
    if (FileDescriptor came = descriptorIn(header); came.isOpen()) descriptor_ = std::move(came);
  }
  const bool lawful = got > 1 && (header.msg_flags & MSG_TRUNC) == 0 && begun_.size() <= kLongestMessage &&
                      (kind == kLast || kind == kMoreFollows);
  if (!lawful) return MessageArrival::Gone;
  if (kind == kMoreFollows) return MessageArrival::Nothing;
  message = std::move(begun_);
  begun_.clear();
  return MessageArrival::Message;
}

}  // namespace lumivane
