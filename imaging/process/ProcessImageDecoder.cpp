#include "imaging/process/ProcessImageDecoder.h"

#include <algorithm>
#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

class FailedSource final : public ImageSource {
 public:
  ImageSourceStatus status() const override { return ImageSourceStatus::DecoderFailed; }
  std::optional<PropertyDictionary> properties() override { return std::nullopt; }
  BitmapRef thumbnail(int /*maxPixelSize*/) override { return nullptr; }
};

// What the process said of the file, and the process itself, which still has it open.
class ProcessImageSource final : public ImageSource {
 public:
  ProcessImageSource(DecoderProcesses::Loan loan, const Clock& clock, std::string path, OpenAnswer answer,
                     Nanoseconds timeLeft)
      : loan_(std::move(loan)),
        clock_(clock),
        path_(std::move(path)),
        answer_(std::move(answer)),
        timeLeft_(timeLeft) {}
  ~ProcessImageSource() override {
    if (loan_) (*loan_)->close();
  }
  ProcessImageSource(const ProcessImageSource&) = delete;
  ProcessImageSource& operator=(const ProcessImageSource&) = delete;

  ImageSourceStatus status() const override { return answer_.status; }
  std::optional<PropertyDictionary> properties() override { return answer_.properties; }

  BitmapRef thumbnail(int maxPixelSize) override {
    if (!loan_ || answer_.status != ImageSourceStatus::Complete || maxPixelSize < 1) return nullptr;
    const MediaTime started = clock_.now();
    Answered<BitmapRef> answered =
        (*loan_)->decode(std::min(maxPixelSize, kThumbnailMaxPixelSize), timeLeft_);
    timeLeft_ -= clock_.now() - started;
    if (auto* const bitmap = std::get_if<BitmapRef>(&answered)) return std::move(*bitmap);
    loan_->giveUp(std::get<DecoderTrouble>(answered), path_, "decoded");
    loan_.reset();
    return nullptr;
  }

 private:
  std::optional<DecoderProcesses::Loan> loan_;
  const Clock& clock_;
  const std::string path_;
  const OpenAnswer answer_;
  Nanoseconds timeLeft_;
};

}  // namespace

std::unique_ptr<ImageSource> ProcessImageDecoder::open(const std::string& path) {
  // The system would not open these either.
  if (path.empty() || path.size() > kLongestPath || path.find('\0') != std::string::npos) return nullptr;
  if (processes_.isDeadly(path)) {
    processes_.log().error("Not tried again, it ended the decoder process before: " + printable(path));
    return std::make_unique<FailedSource>();
  }
  std::optional<DecoderProcesses::Loan> loan = processes_.take();
  if (!loan) return std::make_unique<FailedSource>();
  const MediaTime started = processes_.clock().now();
  Answered<OpenAnswer> answered = (*loan)->open(path, processes_.limits().picture);
  if (const auto* trouble = std::get_if<DecoderTrouble>(&answered)) {
    loan->giveUp(*trouble, path, "opened");
    return std::make_unique<FailedSource>();
  }
  auto& answer = std::get<OpenAnswer>(answered);
  if (!answer.opened) return nullptr;
  const Nanoseconds left = processes_.limits().picture - (processes_.clock().now() - started);
  return std::make_unique<ProcessImageSource>(std::move(*loan), processes_.clock(), path, std::move(answer),
                                              left);
}

}  // namespace lumivane
