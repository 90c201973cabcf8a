#include "app/TimedDecoder.h"

#include <utility>

namespace lumivane {
namespace {

class TimedSource final : public ImageSource {
 public:
  TimedSource(std::unique_ptr<ImageSource> source, Nanoseconds opening, const Clock& clock,
              const DecodeListener& decoded)
      : source_(std::move(source)), opening_(opening), clock_(clock), decoded_(decoded) {}

  ImageSourceStatus status() const override { return source_->status(); }
  std::optional<PropertyDictionary> properties() override { return source_->properties(); }

  BitmapRef thumbnail(int maxPixelSize) override {
    const MediaTime started = clock_.now();
    BitmapRef picture = source_->thumbnail(maxPixelSize);
    decoded_(clock_.now() - started + std::exchange(opening_, {}));
    return picture;
  }

 private:
  const std::unique_ptr<ImageSource> source_;
  Nanoseconds opening_;  // counts once
  const Clock& clock_;
  const DecodeListener& decoded_;
};

}  // namespace

std::unique_ptr<ImageSource> TimedDecoder::open(const std::string& path) {
  const MediaTime started = clock_.now();
  std::unique_ptr<ImageSource> source = decoder_.open(path);
  if (!source) return nullptr;
  return std::make_unique<TimedSource>(std::move(source), clock_.now() - started, clock_, decoded_);
}

}  // namespace lumivane
