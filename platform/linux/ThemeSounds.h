// The sounds of the freedesktop sound theme, played by libcanberra.
//
// Threads: as in Sounds.h. The sound system is spoken to on a queue, since it may be slow to answer.
// Owns:    the queue and the connection. Destruction cuts off what still plays; it waits for an answer that the sound
//          system owes (libraries of sound servers give up after half a minute at the latest).
// Errors:  as in Sounds.h. Where there is no sound card, ALSA's library complains to standard error as well.
#pragma once

#include <memory>
#include <string>

#include "platform/MainLoop.h"
#include "platform/SerialQueue.h"
#include "platform/Sounds.h"

struct ca_context;

namespace lumivane {

// Where libcanberra plays to; empty = what it finds by itself: a sound server, else ALSA.
struct SoundOutput {
  std::string driver;
  std::string device;
};

class ThemeSounds final : public Sounds {
 public:
  // The main loop must outlive the sounds.
  ThemeSounds(SerialQueues& queues, MainLoop& mainLoop, SoundOutput output = {});
  ~ThemeSounds() override;
  // Does nothing while the same sound is still to be heard: a key held down does not pile it up.
  void play(Sound sound, OnFailure onFailure) override;

 private:
  struct CloseConnection {
    void operator()(ca_context* connection) const;
  };
  using Connection = std::unique_ptr<ca_context, CloseConnection>;

  [[nodiscard]] int start(Sound sound);
  [[nodiscard]] int connect();

  // Constant after construction.
  MainLoop& mainLoop_;
  const SoundOutput output_;

  // The queue's thread only.
  Connection connection_;

  std::unique_ptr<SerialQueue> queue_;  // last: ends before what its jobs use
};

}  // namespace lumivane
