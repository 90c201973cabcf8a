#include "imaging/decode/PixelPool.h"

#include <sys/mman.h>

#include <cstdlib>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

namespace lumivane {

namespace {

constexpr std::size_t kHugePage = std::size_t{2} << 20;
constexpr std::size_t kLargestRequest = std::size_t{1} << 40;

struct FreeMemory {
  void operator()(std::byte* data) const { std::free(data); }
};
using Block = std::unique_ptr<std::byte, FreeMemory>;

Block allocateBlock(std::size_t bytes) {
  const bool large = bytes >= 2 * kHugePage;
  const std::size_t alignment = large ? kHugePage : 64;
  const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
  Block block(static_cast<std::byte*>(std::aligned_alloc(alignment, rounded)));
  // Fewer page faults at the first touch; only a wish, so the answer does not matter.
  if (block && large) (void)madvise(block.get(), rounded, MADV_HUGEPAGE);
  return block;
}

}  // namespace

// The idle buffers, shared by the pool and by every buffer on loan.
class PixelPool::Shelf {
 public:
  explicit Shelf(Limits limits) : limits_(limits) {}

  Block take(std::size_t capacity) {
    const std::lock_guard lock(mutex_);
    for (auto it = idle_.rbegin(); it != idle_.rend(); ++it) {
      if (it->capacity != capacity) continue;
      Block block = std::move(it->block);
      idle_.erase(std::next(it).base());
      return block;
    }
    return nullptr;
  }

  void putBack(Block block, std::size_t capacity) {
    std::vector<Idle> freed;  // Freed after the lock: giving memory back takes its time.
    const std::lock_guard lock(mutex_);
    idle_.push_back({std::move(block), capacity});
    while (idle_.size() > limits_.idleBuffers || bytesLocked() > limits_.idleBytes) {
      freed.push_back(std::move(idle_.front()));
      idle_.erase(idle_.begin());
    }
  }

  void trim() {
    std::vector<Idle> freed;
    const std::lock_guard lock(mutex_);
    freed.swap(idle_);
  }

  std::size_t count() const {
    const std::lock_guard lock(mutex_);
    return idle_.size();
  }

  std::size_t bytes() const {
    const std::lock_guard lock(mutex_);
    return bytesLocked();
  }

 private:
  struct Idle {
    Block block;
    std::size_t capacity;
  };

  std::size_t bytesLocked() const {
    std::size_t sum = 0;
    for (const Idle& idle : idle_) sum += idle.capacity;
    return sum;
  }

  // Constant after construction
  const Limits limits_;

  // Guarded by mutex_
  mutable std::mutex mutex_;
  std::vector<Idle> idle_;  // oldest first
};

PixelPool::PixelPool(Limits limits) : shelf_(std::make_shared<Shelf>(limits)) {}

PixelBuffer PixelPool::take(std::size_t bytes) {
  if (bytes == 0 || bytes > kLargestRequest) return {};
  const std::size_t capacity = pixelPoolSizeClass(bytes);
  Block block = shelf_->take(capacity);
  if (!block) block = allocateBlock(capacity);
  if (!block) return {};
  // The pool may be gone when the last picture is dropped: then there is no shelf left to put it on.
  auto giveBack = [shelf = std::weak_ptr(shelf_), capacity](std::byte* data, std::size_t) {
    Block returned(data);
    if (const auto stillThere = shelf.lock()) stillThere->putBack(std::move(returned), capacity);
  };
  return {block.release(), bytes, std::move(giveBack)};
}

void PixelPool::trim() {
  shelf_->trim();
}
std::size_t PixelPool::idleBuffers() const {
  return shelf_->count();
}
std::size_t PixelPool::idleBytes() const {
  return shelf_->bytes();
}

}  // namespace lumivane
