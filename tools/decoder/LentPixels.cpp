#include "tools/decoder/LentPixels.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace lumivane {
namespace {

// Fresh memory is cheaper to have in one go than page by page. True also where the system does not know how.
bool touchAll(std::byte* data, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
  constexpr int kPopulateWrite = MADV_POPULATE_WRITE;
#else
  constexpr int kPopulateWrite = 23;
#endif
  return ::madvise(data, bytes, kPopulateWrite) == 0 || errno == EINVAL;
}

std::size_t wholePages(std::size_t bytes) {
  constexpr std::size_t kPage = 4096;
  return (bytes + kPage - 1) / kPage * kPage;
}

}  // namespace

LentPixels::~LentPixels() {
  for (const Mapping& mapping : mappings_) ::munmap(mapping.data, mapping.bytes);
}

void LentPixels::begin(RequestNumber request) {
  request_ = request;
  taken_ = false;
}

PixelBuffer LentPixels::take(std::size_t bytes) {
  if (std::exchange(taken_, true) || bytes == 0) return {};
  const std::optional<MemoryLoan> loan = ask(bytes);
  if (!loan) return {};
  forget(loan->gone);
  if (loan->buffer == 0 || loan->bytes < bytes) return {};
  std::byte* const data = placeOf(*loan, bytes);
  if (data == nullptr) return {};
  return {data, bytes, [](std::byte*, std::size_t) {}};
}

std::optional<MemoryLoan> LentPixels::ask(std::size_t bytes) {
  if (!sendMessage(socket_, encoded(DecoderAnswer(MemoryWish{request_, bytes})), -1,
                   Waiting::AsLongAsItTakes))
    return std::nullopt;
  std::vector<std::byte> message;
  MessageArrival arrival = MessageArrival::Nothing;
  while (arrival == MessageArrival::Nothing) arrival = receiver_.receive(message, std::nullopt);
  if (arrival == MessageArrival::Gone) return std::nullopt;
  std::optional<DecoderRequest> request = requestIn(message);
  auto* const loan = request ? std::get_if<MemoryLoan>(&*request) : nullptr;
  if (loan == nullptr || loan->request != request_) return std::nullopt;
  return std::move(*loan);
}

std::byte* LentPixels::placeOf(const MemoryLoan& loan, std::size_t wanted) {
  const FileDescriptor memory = receiver_.takeDescriptor();
  const auto found = std::find_if(mappings_.begin(), mappings_.end(),
                                  [&loan](const Mapping& mapping) { return mapping.buffer == loan.buffer; });
  if (found == mappings_.end()) return map(loan, memory, wanted);
  if (found->bytes < wanted) return nullptr;
  mappings_.splice(mappings_.begin(), mappings_, found);
  return found->data;
}

std::byte* LentPixels::map(const MemoryLoan& loan, const FileDescriptor& memory, std::size_t wanted) {
  struct stat status {};
  if (!memory.isOpen() || ::fstat(memory.get(), &status) != 0) return nullptr;
  if (status.st_size < 0 || static_cast<std::uint64_t>(status.st_size) < loan.bytes) return nullptr;
  const auto bytes = static_cast<std::size_t>(loan.bytes);
  makeRoomFor(bytes);
  void* const mapped = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, memory.get(), 0);
  if (mapped == MAP_FAILED) return nullptr;
  mappings_.push_front({loan.buffer, static_cast<std::byte*>(mapped), bytes});
  return touchAll(mappings_.front().data, std::min(bytes, wholePages(wanted))) ? mappings_.front().data
                                                                               : nullptr;
}

// The one that was not used for the longest time goes first.
void LentPixels::makeRoomFor(std::size_t bytes) {
  std::uint64_t mapped = bytes;
  for (const Mapping& mapping : mappings_) mapped += mapping.bytes;
  while (mapped > kMostMappedBytes && !mappings_.empty()) {
    mapped -= mappings_.back().bytes;
    ::munmap(mappings_.back().data, mappings_.back().bytes);
    mappings_.pop_back();
  }
}

void LentPixels::forget(const std::vector<PixelBufferNumber>& buffers) {
  std::erase_if(mappings_, [&buffers](const Mapping& mapping) {
    if (std::find(buffers.begin(), buffers.end(), mapping.buffer) == buffers.end()) return false;
    ::munmap(mapping.data, mapping.bytes);
    return true;
  });
}

}  // namespace lumivane
