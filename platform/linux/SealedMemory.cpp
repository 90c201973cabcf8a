#include "platform/linux/SealedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <cerrno>
#include <limits>
#include <system_error>

namespace lumivane {
namespace {

Error failure(const char* what) {
  return Error{std::string("Shared memory: ") + what + ": " +
               std::error_code(errno, std::system_category()).message()};
}

}  // namespace

Result<std::unique_ptr<SharedMemory>> SealedMemory::make(std::size_t bytes) {
  if (bytes == 0 || bytes > std::numeric_limits<off_t>::max()) return Error{"Shared memory: no such size"};
  FileDescriptor file(::memfd_create("lumivane-pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  if (!file.isOpen()) return failure("memfd_create");
  if (::ftruncate(file.get(), static_cast<off_t>(bytes)) != 0) return failure("ftruncate");
  if (::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
    return failure("F_ADD_SEALS");
  void* const mapped = ::mmap(nullptr, bytes, PROT_READ, MAP_SHARED, file.get(), 0);
  if (mapped == MAP_FAILED) return failure("mmap");
  return std::unique_ptr<SharedMemory>(
      new SealedMemory(std::move(file), {static_cast<const std::byte*>(mapped), bytes}));
}

SealedMemory::~SealedMemory() {
  ::munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size());
  // Memory must go back to the system even while the other process has it mapped.
  (void)::fallocate(file_.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, 0,
                    static_cast<off_t>(bytes_.size()));
}

}  // namespace lumivane
