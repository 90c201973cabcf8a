#include "tools/decoder/PictureService.h"

#include <exception>
#include <utility>

namespace lumivane {

bool PictureService::send(const DecoderAnswer& answer) {
  return sendMessage(socket_, encoded(answer), -1, Waiting::AsLongAsItTakes);
}

void PictureService::run(HelloAnswer hello) {
  bool goesOn = send(hello);
  std::vector<std::byte> message;
  while (goesOn) {
    const MessageArrival arrival = receiver_.receive(message, std::nullopt);
    if (arrival == MessageArrival::Gone) return;
    if (arrival == MessageArrival::Nothing) continue;
    const std::optional<DecoderRequest> request = requestIn(message);
    goesOn = request && std::visit([this](const auto& one) { return handle(one); }, *request);
  }
}

bool PictureService::handle(const OpenRequest& request) {
  OpenAnswer answer{request.request, false, ImageSourceStatus::Complete, std::nullopt};
  try {
    source_ = decoder_.open(request.path);
    answer.opened = source_ != nullptr;
    if (source_) answer.status = source_->status();
    if (source_ && answer.status == ImageSourceStatus::Complete) answer.properties = source_->properties();
  } catch (const std::exception&) {  // no memory, for the most part
    source_.reset();
    answer = {request.request, true, ImageSourceStatus::InvalidData, std::nullopt};
  }
  return send(answer);
}

bool PictureService::handle(const DecodeRequest& request) {
  DecodeAnswer answer;
  answer.request = request.request;
  pixels_.begin(request.request);
  try {
    const BitmapRef bitmap = source_ ? source_->thumbnail(request.maxPixelSize) : nullptr;
    if (bitmap) {
      answer = {request.request, true, bitmap->storedSize(), bitmap->orientation(), bitmap->opaque()};
      answer.inPlanes = bitmap->planes().has_value();
      if (answer.inPlanes) answer.chroma = bitmap->planes()->chroma;
    }
  } catch (const std::exception&) {
    answer.decoded = false;
  }
  return send(answer);
}

bool PictureService::handle(const MeasureRequest& request) {
  MeasureAnswer answer{request.request, {}};
  try {
    answer.sizes = dimensions_.measure(request.paths);
  } catch (const std::exception&) {
    answer.sizes.assign(request.paths.size(), kNoPicture);
  }
  return send(answer);
}

bool PictureService::handle(const CloseRequest& /*request*/) {
  source_.reset();
  return true;
}

// One that nobody asked for.
bool PictureService::handle(const MemoryLoan& /*loan*/) {
  return false;
}

}  // namespace lumivane
