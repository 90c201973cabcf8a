#include "imaging/process/SharedPixelPool.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

#include "imaging/PixelSizeClass.h"

namespace lumivane {

// The idle pieces, shared by the pool and by every piece on loan, and the numbers of all that exist.
class SharedPixelPool::Shelf {
 public:
  explicit Shelf(Limits limits) : limits_(limits) {}

  std::optional<SharedPixels> take(std::size_t capacity) {
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(idle_.rbegin(), idle_.rend(), [capacity](const SharedPixels& pixels) {
      return pixels.memory->bytes().size() == capacity;
    });
    if (found == idle_.rend()) return std::nullopt;
    SharedPixels pixels = std::move(*found);
    idle_.erase(std::next(found).base());
    return pixels;
  }

  SharedPixels numbered(std::shared_ptr<const SharedMemory> memory) {
    const std::lock_guard lock(mutex_);
    std::erase_if(existing_, [](const auto& entry) { return entry.second.expired(); });
    existing_.emplace(++lastNumber_, memory);
    return {lastNumber_, std::move(memory)};
  }

  void putBack(SharedPixels pixels) {
    std::vector<SharedPixels> freed;  // Freed after the lock: giving memory back takes its time.
    const std::lock_guard lock(mutex_);
    idle_.push_back(std::move(pixels));
    while (idle_.size() > limits_.idleBuffers || idleBytesLocked() > limits_.idleBytes) {
      freed.push_back(std::move(idle_.front()));
      idle_.erase(idle_.begin());
    }
  }

  std::vector<PixelBufferNumber> goneOf(std::span<const PixelBufferNumber> numbers) const {
    const std::lock_guard lock(mutex_);
    std::vector<PixelBufferNumber> gone;
    for (const PixelBufferNumber number : numbers) {
      const auto found = existing_.find(number);
      if (found == existing_.end() || found->second.expired()) gone.push_back(number);
    }
    return gone;
  }

  std::size_t idleBuffers() const {
    const std::lock_guard lock(mutex_);
    return idle_.size();
  }

 private:
  std::size_t idleBytesLocked() const {
    std::size_t sum = 0;
    for (const SharedPixels& pixels : idle_) sum += pixels.memory->bytes().size();
    return sum;
  }

  // Constant after construction
  const Limits limits_;

  // Guarded by mutex_
  mutable std::mutex mutex_;
  std::vector<SharedPixels> idle_;  // oldest first
  std::map<PixelBufferNumber, std::weak_ptr<const SharedMemory>> existing_;
  PixelBufferNumber lastNumber_ = 0;
};

SharedPixelPool::SharedPixelPool(SharedMemories& memories, Limits limits)
    : memories_(memories), shelf_(std::make_shared<Shelf>(limits)) {}

std::optional<SharedPixels> SharedPixelPool::take(std::size_t bytes) {
  const std::size_t capacity = pixelPoolSizeClass(bytes);
  if (auto idle = shelf_->take(capacity)) return idle;
  auto memory = memories_.make(capacity);
  if (!memory) return std::nullopt;
  return shelf_->numbered(std::move(memory).value());
}

PixelBuffer SharedPixelPool::pictureIn(SharedPixels pixels) {
  const std::span<const std::byte> bytes = pixels.memory->bytes();
  // The pool may be gone when the last picture is dropped: then there is no shelf left to put it on.
  auto giveBack = [shelf = std::weak_ptr(shelf_), held = std::move(pixels)](std::byte*, std::size_t) {
    if (const auto stillThere = shelf.lock()) stillThere->putBack(held);
  };
  // A bitmap is constant: nobody writes through this pointer, and the system would not let them.
  return {const_cast<std::byte*>(bytes.data()), bytes.size(), std::move(giveBack)};
}

std::vector<PixelBufferNumber> SharedPixelPool::goneOf(std::span<const PixelBufferNumber> numbers) const {
  return shelf_->goneOf(numbers);
}
std::size_t SharedPixelPool::idleBuffers() const {
  return shelf_->idleBuffers();
}

}  // namespace lumivane
