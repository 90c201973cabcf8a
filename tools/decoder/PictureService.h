// Answers what the show asks about picture files, one request after the other, until the line ends.
//
// Threads: one.
// Owns:    the picture that is open.
// Units:   pixels.
// Errors:  what goes wrong with a picture is its answer; a request that makes no sense ends the service.
#pragma once

#include <memory>

#include "imaging/ImageDecoder.h"
#include "imaging/process/DecoderProtocol.h"
#include "platform/PictureDimensions.h"
#include "platform/linux/MessageSocket.h"
#include "tools/decoder/LentPixels.h"

namespace lumivane {

class PictureService {
 public:
  // Requires: `decoder` decodes into `pixels`.
  PictureService(int socket, MessageReceiver& receiver, LentPixels& pixels, ImageDecoder& decoder,
                 PictureDimensions& dimensions)
      : socket_(socket), receiver_(receiver), pixels_(pixels), decoder_(decoder), dimensions_(dimensions) {}

  void run(HelloAnswer hello);

 private:
  [[nodiscard]] bool send(const DecoderAnswer& answer);
  [[nodiscard]] bool handle(const OpenRequest& request);
  [[nodiscard]] bool handle(const DecodeRequest& request);
  [[nodiscard]] bool handle(const MeasureRequest& request);
  [[nodiscard]] bool handle(const CloseRequest& request);
  [[nodiscard]] bool handle(const MemoryLoan& loan);

  const int socket_;
  MessageReceiver& receiver_;
  LentPixels& pixels_;
  ImageDecoder& decoder_;
  PictureDimensions& dimensions_;
  std::unique_ptr<ImageSource> source_;
};

}  // namespace lumivane
