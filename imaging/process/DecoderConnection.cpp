#include "imaging/process/DecoderConnection.h"

#include <algorithm>

namespace lumivane {
namespace {

// The most memory that a picture with a longest side of maxPixelSize can need with its levels.
std::size_t mostBytes(int maxPixelSize) {
  return packedLevelsBytes({maxPixelSize, maxPixelSize});
}

bool fits(const DecodeAnswer& answer, int maxPixelSize, std::size_t room) {
  if (std::max(answer.size.width, answer.size.height) > maxPixelSize) return false;
  return (answer.inPlanes ? packedPlanes(answer.size, answer.chroma).bytes
                          : packedLevelsBytes(answer.size)) <= room;
}

BitmapRef bitmapIn(PixelBuffer pixels, const DecodeAnswer& answer) {
  if (answer.inPlanes) {
    return std::make_shared<const Bitmap>(std::move(pixels), packedPlanes(answer.size, answer.chroma),
                                          answer.orientation);
  }
  return std::make_shared<const Bitmap>(std::move(pixels), packedLevels(answer.size), answer.orientation,
                                        answer.opaque);
}

}  // namespace

class DecoderConnection::Deadline {
 public:
  Deadline(const Clock& clock, Nanoseconds limit) : clock_(clock), end_(clock.now() + limit) {}
  [[nodiscard]] Nanoseconds left() const { return end_ - clock_.now(); }

 private:
  const Clock& clock_;
  const MediaTime end_;
};

DecoderConnection::DecoderConnection(std::unique_ptr<ChildProgram> child,
                                     std::shared_ptr<SharedPixelPool> pool, const Clock& clock)
    : child_(std::move(child)), pool_(std::move(pool)), clock_(clock) {}

Answered<DecoderAnswer> DecoderConnection::next(const Deadline& deadline) {
  while (true) {
    const Nanoseconds left = deadline.left();
    const MessageArrival arrival = child_->receive(message_, std::max(left, Nanoseconds{0}));
    if (arrival == MessageArrival::Gone) return DecoderTrouble::Ended;
    if (arrival == MessageArrival::Message) break;
    if (left <= Nanoseconds{0}) return DecoderTrouble::TooSlow;
  }
  std::optional<DecoderAnswer> answer = answerIn(message_);
  if (!answer) return DecoderTrouble::Nonsense;
  return std::move(*answer);
}

template <typename Answer>
Answered<Answer> DecoderConnection::answerTo(const DecoderRequest& request, Nanoseconds limit) {
  if (!child_->send(encoded(request))) return DecoderTrouble::Ended;
  Answered<DecoderAnswer> answered = next(Deadline(clock_, limit));
  if (const auto* trouble = std::get_if<DecoderTrouble>(&answered)) return *trouble;
  auto* const answer = std::get_if<Answer>(&std::get<DecoderAnswer>(answered));
  if (answer == nullptr || answer->request != lastRequest_) return DecoderTrouble::Nonsense;
  return std::move(*answer);
}

Answered<HelloAnswer> DecoderConnection::hello(Nanoseconds limit) {
  Answered<DecoderAnswer> answered = next(Deadline(clock_, limit));
  if (const auto* trouble = std::get_if<DecoderTrouble>(&answered)) return *trouble;
  const auto* const greeting = std::get_if<HelloAnswer>(&std::get<DecoderAnswer>(answered));
  if (greeting == nullptr || greeting->protocol != kDecoderProtocol) return DecoderTrouble::Nonsense;
  return *greeting;
}

bool DecoderConnection::isQuietAndThere() {
  return child_->receive(message_, Nanoseconds{0}) == MessageArrival::Nothing;
}

Answered<OpenAnswer> DecoderConnection::open(const std::string& path, Nanoseconds limit) {
  return answerTo<OpenAnswer>(OpenRequest{++lastRequest_, path}, limit);
}

// Whether it arrives shows when the next thing is asked.
void DecoderConnection::close() {
  (void)child_->send(encoded(DecoderRequest(CloseRequest{})));
}

Answered<MeasureAnswer> DecoderConnection::measure(std::vector<std::string> paths, Nanoseconds limit) {
  const std::size_t count = paths.size();
  auto answered = answerTo<MeasureAnswer>(MeasureRequest{++lastRequest_, std::move(paths)}, limit);
  const auto* const answer = std::get_if<MeasureAnswer>(&answered);
  if (answer != nullptr && answer->sizes.size() != count) return DecoderTrouble::Nonsense;
  return answered;
}

Answered<BitmapRef> DecoderConnection::decode(int maxPixelSize, Nanoseconds limit) {
  const Deadline deadline(clock_, limit);
  std::optional<SharedPixels> lent;
  Answered<DecoderAnswer> answered =
      answerToDecode({++lastRequest_, static_cast<std::int32_t>(maxPixelSize)}, deadline, lent);
  if (const auto* trouble = std::get_if<DecoderTrouble>(&answered)) return *trouble;
  const auto* const answer = std::get_if<DecodeAnswer>(&std::get<DecoderAnswer>(answered));
  if (answer == nullptr || answer->request != lastRequest_) return DecoderTrouble::Nonsense;
  if (!answer->decoded) {
    if (lent) (void)pool_->pictureIn(std::move(*lent));  // back to the others
    return BitmapRef();
  }
  if (!lent || !fits(*answer, maxPixelSize, lent->memory->bytes().size())) return DecoderTrouble::Nonsense;
  return bitmapIn(pool_->pictureIn(std::move(*lent)), *answer);
}

// The answer itself, or the one wish for memory that comes before it.
Answered<DecoderAnswer> DecoderConnection::answerToDecode(DecodeRequest request, const Deadline& deadline,
                                                          std::optional<SharedPixels>& lent) {
  if (!child_->send(encoded(DecoderRequest(request)))) return DecoderTrouble::Ended;
  Answered<DecoderAnswer> answered = next(deadline);
  const auto* const answer = std::get_if<DecoderAnswer>(&answered);
  const auto* const wish = answer != nullptr ? std::get_if<MemoryWish>(answer) : nullptr;
  if (wish == nullptr) return answered;
  if (wish->request != request.request || wish->bytes == 0 || wish->bytes > mostBytes(request.maxPixelSize))
    return DecoderTrouble::Nonsense;
  if (!lend(*wish, lent)) return DecoderTrouble::Ended;
  return next(deadline);
}

bool DecoderConnection::lend(const MemoryWish& wish, std::optional<SharedPixels>& lent) {
  MemoryLoan loan{wish.request, 0, 0, {}};
  const std::vector<PixelBufferNumber> seen(seen_.begin(), seen_.end());
  loan.gone = pool_->goneOf(seen);
  for (const PixelBufferNumber number : loan.gone) seen_.erase(number);
  lent = pool_->take(static_cast<std::size_t>(wish.bytes));
  if (!lent) return child_->send(encoded(DecoderRequest(loan)));
  loan.buffer = lent->number;
  loan.bytes = lent->memory->bytes().size();
  seen_.insert(lent->number);
  return child_->send(encoded(DecoderRequest(loan)), lent->memory.get());
}

}  // namespace lumivane
